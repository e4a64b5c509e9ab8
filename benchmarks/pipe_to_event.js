// Reads what a child pours out line by line, parses each, and prints the milliseconds from the child's launch to its end.
const { spawn } = require('child_process');
const readline = require('readline');
const start = process.hrtime.bigint();
const child = spawn('/bin/cat', [process.argv[2]], { stdio: ['ignore', 'pipe', 'inherit'] });
let events = 0;
const lines = readline.createInterface({ input: child.stdout, crlfDelay: Infinity });
lines.on('line', (line) => { if (JSON.parse(line).event) events += 1; });
lines.on('close', () => console.log(Number(process.hrtime.bigint() - start) / 1e6));

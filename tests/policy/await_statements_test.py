"""Which statements the await policy refuses and which it lets through."""

import unittest

from policy_test import policy

await_statements = policy('await_statements')

GOOD = {
    'aPlainWait': 'co_await request;',
    'aValueBuiltBefore': 'Params params{.x = 1}; co_await send(params);',
    'anArgumentInParentheses': 'const auto reply = co_await send(Params(1), names.at(2));',
    'aBlockAfterAnAwaitingCondition': 'if (co_await allowed()) { stop(); }',
    'aReturnWithBracesAfterAnAwaitingCondition': 'if (co_await allowed()) return Answer{1};',
    'aLoopOverWhatWasAwaited': 'for (const auto &line : co_await lines()) { names[line] = Name{line}; }',
    'awaitsInsideALambdaBody': 'startTask(this, [this]() -> QCoro::Task<> { co_await sleep(); });',
    'aStoredLambdaThatAwaits': 'auto step = [this](int n) -> QCoro::Task<int> { co_return co_await next(n); };',
    'aLambdaWithoutParameters': 'run([this] { auto task = next(); co_await task; });',
    'aBlockThenAnAwait': 'if (done) { list[0] = A{1}; } co_await next();',
    'elseThenAnAwait': 'if (done) x = A{1}; else co_await next();',
    'doWhileAnAwait': 'do { a[1] = 2; } while (co_await more());',
    'aTryBlock': 'try { co_await next(); } catch (const Failure &failure) { kept = Kept{failure}; }',
    'aCaseLabel': 'switch (kind) { case Kind::one: { co_await next(); break; } default: { a[0] = 1; } }',
    'bracesInAComment': 'co_await next(); // not send(A{1})\n',
    'bracesInALiteral': 'co_await next("{[", u\'{\', R"x({[)x");',
    'bracesInADirective': '#define SEND co_await send(A{1})\n',
    'anAttribute': '[[maybe_unused]] const auto reply = co_await next();',
    'aMemberOfAClass': 'class Store { int _count{0}; QCoro::Task<> load() const & { co_await next(); } };',
    'aConstructorWithAnInitializerList': 'Store::Store() : a{1}, b(2) { run([this]() -> QCoro::Task<> { co_await go(); }); }',
    'aTemplate': 'template<typename T = int> struct Box { T value{}; QCoro::Task<T> get() { co_return co_await next(); } };',
    'digitSeparators': 'wait(10\'000); co_await next(); a[1] = 10\'000;',
}

BAD = {
    'anAggregate': ('co_await send(A{.x = 1});', '{'),
    'anAggregateOverLines': ('co_await send(\n    A{\n        .x = 1});', '{'),
    'anAggregateAroundTheAwait': ('const auto record = A{.n = co_await next()};', '{'),
    'anInitializerList': ('co_await send({1, 2});', '{'),
    'aCapturingLambda': ('co_await run([captured] { return captured; });', '['),
    'aCapturingLambdaWithAReturnType': ('co_await run([=](int n) -> int { return n; });', '['),
    'aSubscript': ('co_await send(names[2]);', '['),
    'insideACondition': ('if (co_await send(A{1})) { stop(); }', '{'),
    'insideAReturn': ('co_return co_await send(A{1});', '{'),
    'insideALambdaBody': ('startTask(this, [this]() -> QCoro::Task<> { co_await send(A{1}); });', '{'),
    'insideAStoredLambda': ('auto step = [this](int n) -> QCoro::Task<int> { co_return co_await next(A{n}); };', '{'),
    'afterABlock': ('if (done) { stop(); } co_await send(A{1});', '{'),
    'inAnElse': ('if (done) stop(); else co_await send(A{1});', '{'),
    'inADoWhile': ('do { stop(); } while (co_await more(A{1}));', '{'),
    'inACase': ('switch (kind) { case Kind::one: co_await send(A{1}); }', '{'),
    'inAMember': ('class Store { QCoro::Task<> load() const { co_await send(A{1}); } };', '{'),
    'inATemplate': ('template<typename T> QCoro::Task<T> get() { co_return co_await send(T{}); }', '{'),
    'behindALiteralWithAQuote': ('const auto c = u\'"\'; co_await send(A{1}); const auto d = u\'"\';', '{'),
}


class AwaitStatements(unittest.TestCase):
    def test_whatIsSoundIsLetThrough(self):
        for name, code in GOOD.items():
            for form in (code, f'QCoro::Task<> Store::load() {{\n{code}\n}}'):
                with self.subTest(name, form=form):
                    self.assertEqual(await_statements.check(form), [])

    def test_whatGccBreaksIsRefused(self):
        for name, (code, character) in BAD.items():
            for form in (code, f'namespace zelk {{ QCoro::Task<> Store::load() {{ {code} }} }}'):
                with self.subTest(name, form=form):
                    self.assertEqual([found for _, found in await_statements.check(form)], [character])

    def test_theLineIsThatOfTheAwait(self):
        code = '/* one\n two */\nvoid f() {\n    auto s = R"(\n)";\n    co_await send(\n        A{1});\n}\n'
        self.assertEqual(await_statements.check(code), [(6, '{')])


if __name__ == '__main__':
    unittest.main()

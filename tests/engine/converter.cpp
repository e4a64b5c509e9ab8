// Stands in for the program that converts audio. CONVERTER_DOES says how it behaves, CONVERTED what a sound result is.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

std::string told(const char *variable) {
    const char *value = std::getenv(variable);
    return value ? value : "";
}

void write(const std::string &path, const std::string &bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

[[noreturn]] void hang() {
    for (;;) {
        ::pause();
    }
}

} // namespace

int main(int argc, char **argv) {
    const std::string behaviour = told("CONVERTER_DOES");
    const std::string to = std::string(argv[argc - 1]).substr(std::string("file:").size());
    std::ifstream sound(told("CONVERTED"), std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(sound)), std::istreambuf_iterator<char>());
    if (behaviour == "nothing") {
        return EXIT_SUCCESS;
    }
    if (behaviour == "garbage") {
        write(to, std::string(20'000, 'g'));
        return EXIT_SUCCESS;
    }
    write(to, whole.substr(0, whole.size() / 2));
    if (behaviour == "hang") {
        write(told("CONVERTER_PID") + ".new", std::to_string(::getpid()));
        std::rename((told("CONVERTER_PID") + ".new").c_str(), told("CONVERTER_PID").c_str());
        hang();
    }
    while (behaviour == "wait" && ::access(told("CONVERTER_GATE").c_str(), F_OK) != 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    if (behaviour == "fail") {
        std::cerr << "[opus @ 0x1]\n" << to << ": Invalid data found when processing input\n";
        return EXIT_FAILURE;
    }
    if (behaviour == "full") {
        std::cerr << "av_interleaved_write_frame(): No space left on device\n";
        return EXIT_FAILURE;
    }
    if (behaviour == "die") {
        std::raise(SIGTERM);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    write(to, whole);
    return EXIT_SUCCESS;
}

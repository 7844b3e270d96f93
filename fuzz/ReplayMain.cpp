// Runs a fuzz target on every file of a corpus, with any compiler and without a fuzzer.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& corpus) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator{corpus}) {
        files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

std::vector<std::uint8_t> contentsOf(const std::filesystem::path& file) {
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

int replay(const std::string& target, const std::filesystem::path& corpus) {
    const auto files = filesOf(corpus);
    for (const auto& file : files) {
        // Printed before it runs: a finding ends the process.
        std::fprintf(stderr, "%s\n", file.c_str());
        const auto input = contentsOf(file);
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%s: %zu inputs replayed\n", target.c_str(), files.size());
    return files.empty() ? 1 : 0;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fputs("usage: replay TARGET CORPUS\n", stderr);
        return 2;
    }
    try {
        return replay(arguments[1], arguments[2]);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
        return 2;
    }
}

// Stands in for libFuzzer: gives each file of the folders or files named on the command line to the target once, and
// each of its prefixes too, so that a few seeds meet every place where a reader can run out of bytes.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr std::size_t LongestForPrefixes = 4096;

void RunFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const std::size_t shortest = bytes.size() <= LongestForPrefixes ? 0 : bytes.size();
    for (std::size_t size = shortest; size <= bytes.size(); ++size) {
        const std::vector<std::uint8_t> prefix(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        LLVMFuzzerTestOneInput(prefix.data(), prefix.size()); // a copy of its own: a sanitizer sees its end
    }
}

} // namespace

int main(int argc, char** argv) {
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) {
            RunFile(argv[i]);
            ++files;
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            RunFile(entry.path());
            ++files;
        }
    }
    std::cout << files << " inputs\n";
    return files > 0 ? 0 : 1; // a target without seeds proves nothing
}

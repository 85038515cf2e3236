// Runs a fuzz target over every file of its corpus, so that inputs once found stay harmless in
// an ordinary build: the test fails by crashing, as the fuzzer would.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " CORPUS\n";
        return 2;
    }
    size_t count = 0;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[1])) {
        if (!entry.is_regular_file())
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string input{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(input.data()), input.size());
        ++count;
    }
    std::cout << count << " inputs\n";
    return count == 0 ? 1 : 0;
}

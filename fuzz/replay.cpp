// Runs a fuzz target over files and folders of inputs, where no fuzzing engine is linked.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::size_t inputs = 0;

void run(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++inputs;
}

}  // namespace

int main(int argc, char** argv) {
    LLVMFuzzerTestOneInput(nullptr, 0);
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) {
            run(argv[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i]))
            if (entry.is_regular_file()) run(entry.path());
    }
    std::printf("%zu inputs\n", inputs);
    return inputs == 0;  // a corpus that is not there would prove nothing
}

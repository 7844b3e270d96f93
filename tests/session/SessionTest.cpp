#include "SessionTest.h"

#include <regex>

#include "Print.h"

namespace velmorindal {
namespace {

template <typename Value>
std::string line(std::string_view name, Value value) {
    return std::string{name} + " " + PrintItem{value}.text();
}

}  // namespace

std::string withoutDescriptors(const std::string& lines) {
    return std::regex_replace(lines, std::regex{"Open Result:  \\d+"}, "Open Result:  N");
}

std::ptrdiff_t occurrences(const std::string& text, std::string_view piece) {
    std::ptrdiff_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

std::vector<std::string> publishedBy(const VelmorindalSwitch& velmorindal) {
    const keyList keys = velmorindal.outputKeys.get();
    return {line("connectionState", velmorindal.connectionState.get()),
            line("outputPath", velmorindal.outputPath.get()),
            line("outputMode", velmorindal.outputMode.get()),
            line("directKey", keys.directKey),
            line("shortKey", keys.shortKey),
            line("longKey", keys.longKey),
            line("clarity", velmorindal.clarity.get()),
            line("cutoff", velmorindal.cutoff.get()),
            line("shortEnabled", velmorindal.shortEnabled.get()),
            line("longEnabled", velmorindal.longEnabled.get()),
            line("justSaved", velmorindal.justSaved.get()),
            line("readWriteProgress", velmorindal.readWriteProgress.get()),
            line("pollingState", velmorindal.pollingState.get()),
            line("detectedClarity", velmorindal.detectedClarity.get()),
            line("detectedDuration", velmorindal.detectedDuration.get())};
}

}  // namespace velmorindal

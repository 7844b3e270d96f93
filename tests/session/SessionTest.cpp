#include "SessionTest.h"

#include "Print.h"

namespace velmorindal {
namespace {

template <typename Value>
std::string line(std::string_view name, Value value) {
    return std::string{name} + " " + PrintItem{value}.text();
}

}  // namespace

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

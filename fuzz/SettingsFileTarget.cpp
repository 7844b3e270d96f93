// Any bytes as a settings file. A refused file changes nothing and has one of the known reasons. An accepted
// file can be saved, and loading the saved file gives the same settings.

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <set>
#include <string>

#include "ConversionOracle.h"
#include "ImmediateDispatch.h"
#include "PosixSystem.h"
#include "Print.h"
#include "PrintedLines.h"
#include "Requirement.h"
#include "TemporaryDirectory.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {
namespace {

/// Writes the input into a file in memory. @returns its path, which uses the descriptors of the process.
std::string fileHolding(const std::uint8_t* data, std::size_t size) {
    static const int descriptor = ::memfd_create("settings", MFD_CLOEXEC);
    require(
        ::ftruncate(descriptor, 0) == 0 && ::pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size),
        "the input can be put into a file");
    return "/proc/self/fd/" + std::to_string(descriptor);
}

/// All that a settings file sets, with the numbers rounded as in a file.
std::string settingsOf(const VelmorindalSwitch& model) {
    const keyList keys = model.outputKeys.get();
    std::string text;
    for (const PrintItem& item :
         std::array<PrintItem, 9>{model.outputPath.get(), model.outputMode.get(), model.longEnabled.get(),
                                  model.shortEnabled.get(), keys.longKey, keys.shortKey, keys.directKey,
                                  oracle::floatValue(oracle::twoDecimals(model.clarity.get())),
                                  oracle::floatValue(oracle::twoDecimals(model.cutoff.get()))}) {
        text += item.text() + ' ';
    }
    return text;
}

const std::set<std::string>& knownReasons() {
    static const std::set<std::string> reasons{
        "Could not load contents of XML file",
        "Could not parse XML file. Possibly invalid syntax.",
        "Missing output path",
        "Missing output mode",
        "Missing long enabled",
        "Missing short enabled",
        "Missing long output key",
        "Missing short output key",
        "Missing direct output key",
        "Missing sensitivity",
        "Missing cutoff",
    };
    return reasons;
}

void saveAndLoad(const VelmorindalSwitch& model, PrintedLines& output) {
    static const TemporaryDirectory directory;
    const std::string file = directory.path() / "settings.xml";
    output.take();
    require(model.writeXML(file) && output.take().find("Write failed") == std::string::npos,
            "what was loaded can be saved");

    ImmediateDispatch dispatch;
    PosixSystem system;
    VelmorindalSwitch again{dispatch, system};
    require(again.loadXML(file), "what was saved can be loaded");
    requireEqual(settingsOf(again), settingsOf(model), "a saved file brings back what was saved");
}

void load(const std::string& file) {
    PrintedLines output;
    ImmediateDispatch dispatch;
    PosixSystem system;
    VelmorindalSwitch model{dispatch, system};
    const std::string before = settingsOf(model);
    if (model.loadXML(file)) {
        require(!model.lastError.get(), "a loaded file leaves no reason");
        saveAndLoad(model, output);
    } else {
        require(knownReasons().contains(model.lastError.get().value_or("")), "a refusal has a known reason");
        requireEqual(settingsOf(model), before, "a refused file changes nothing");
    }
}

}  // namespace
}  // namespace velmorindal

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    velmorindal::load(velmorindal::fileHolding(data, size));
    return 0;
}

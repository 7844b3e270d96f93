#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <string_view>

#include "PosixSystem.h"
#include "TemporaryDirectory.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {

/// Settings files work on the thread of their caller: whatever they dispatched would be a mistake.
class NoDispatch final : public Dispatch {
  public:
    void postToMain(Work /*work*/) override { ADD_FAILURE() << "posted to the main queue"; }
    void runOnMainAndWait(Work /*work*/) override { ADD_FAILURE() << "waited for the main queue"; }
    void runInBackground(Work /*work*/) override { ADD_FAILURE() << "ran in the background"; }
    void runPendingMainWork() override { ADD_FAILURE() << "ran pending main work"; }
};

bool operator==(const ChosenSettings& one, const ChosenSettings& other);
/// For a readable failure.
void PrintTo(const ChosenSettings& settings, std::ostream* stream);

/// What tests/data/complete.xml and its variants hold.
inline constexpr ChosenSettings complete{
    .outputPath = OutputPath::USBKeyboard,
    .outputMode = OutputMode::LongShort,
    .longEnabled = true,
    .shortEnabled = true,
    .outputKeys = {.directKey = OutputKey::Tab, .shortKey = OutputKey::Space, .longKey = OutputKey::ShiftTab},
    .clarity = 0.5F,
    .cutoff = 1.5F};

/// What a model holds before a file is loaded: nothing that any of the files would set.
inline constexpr ChosenSettings before{
    .outputPath = OutputPath::BTKeyboard,
    .outputMode = OutputMode::Direct,
    .longEnabled = false,
    .shortEnabled = false,
    .outputKeys = {.directKey = OutputKey::F10, .shortKey = OutputKey::F11, .longKey = OutputKey::F12},
    .clarity = 0.25F,
    .cutoff = 2.25F};

inline constexpr std::string_view notLoadable = "Could not load contents of XML file";
inline constexpr std::string_view notParsable = "Could not parse XML file. Possibly invalid syntax.";

/// The document that holds `complete`, with one piece of text replaced by another.
std::string completeDocument(std::string_view replaced = {}, std::string_view replacement = {});

std::string dataFile(std::string_view name);
void writeFile(const std::filesystem::path& file, std::string_view contents);
/// How many files and directories there are in `directory`.
std::ptrdiff_t entriesOf(const std::filesystem::path& directory);

/// A model with settings of its own, and a directory that any user may read.
class SettingsFileTest : public testing::Test {
  protected:
    SettingsFileTest();

    /// Loads; what was printed is in `printed`, how often the model announced a change in `announcements`.
    bool load(const std::filesystem::path& file);
    /// Saves; what was printed is in `printed`.
    bool save(const std::filesystem::path& file);

    /// That loading fails with that text and leaves the model as it is.
    void expectRefused(const std::filesystem::path& file, std::string_view text);
    /// That loading succeeds and sets just that.
    void expectLoaded(const std::filesystem::path& file, const ChosenSettings& settings = complete);

    std::filesystem::path path(std::string_view name) const { return directory.path() / name; }

    NoDispatch dispatch;
    PosixSystem system;
    VelmorindalSwitch model{dispatch, system};
    TemporaryDirectory directory;
    std::string printed;
    int announcements = 0;

  private:
    ChangeNotifier::Subscription subscription_;
};

}  // namespace velmorindal

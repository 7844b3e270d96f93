#include "AppDelegate.h"

#include <chrono>
#include <utility>

#include "Print.h"

namespace velmorindal {
namespace {

constexpr std::chrono::milliseconds writeCheckInterval{200};

}  // namespace

AppDelegate::AppDelegate(Dispatch& dispatch, System& system, DongleSearch search)
    : velmorindal{dispatch, system, std::move(search)}, dispatch_{dispatch} {}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed() {
    return true;
}

bool AppDelegate::applicationShouldTerminate() {
    print("I'm being told to go now.");
    print("Quitting program!");
    print("Setting polling state from ", velmorindal.pollingState.get(), PollingState::none);
    velmorindal.stopPollingAndWait();
    // The write posts its final state to the main queue, which runs on this thread.
    while (velmorindal.connectionState.get() == ConnectionStatus::writing) {
        print("Waiting for write to finish.");
        velmorindal.system().sleepFor(writeCheckInterval);
        dispatch_.runPendingMainWork();
    }
    // A write that was submitted but has not entered `writing` needs no wait: it sends nothing before its
    // turn on the main queue, which no longer comes.
    velmorindal.disconnect(false);
    return true;
}

void AppDelegate::applicationWillTerminate() {
    print("Farewell");
}

}  // namespace velmorindal

// Runs the Calibration page of the real wizard with as many auto-tune reports as the line can carry, 960 a
// second. Prints how late events are handled, how long a report takes from its sending to the repaint of its
// bar, processor use and memory. The dongle is a separate process, so that only the wizard is measured.
//
// usage: benchmark-calibration [SECONDS]     (default 60; needs a display or QT_QPA_PLATFORM=offscreen)

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "ApplicationSetup.h"
#include "ProgressBarWidget.h"
#include "TemporaryDirectory.h"
#include "VirtualDongle.h"
#include "WizardDriver.h"

namespace velmorindal {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double reportsPerSecond = 960.0;
/// A report carries the time of its sending: microseconds modulo this cycle of about eight seconds, as a
/// fraction that a float holds exactly.
constexpr std::int64_t cycle = 1 << 23;

std::int64_t microsecondsNow() {
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch()).count();
}

float encodedNow() {
    return static_cast<float>(microsecondsNow() % cycle) / static_cast<float>(cycle);
}

/// Milliseconds since the report with that reading was sent.
double ageOf(double reading) {
    const auto sent = static_cast<std::int64_t>(std::llround(reading * static_cast<double>(cycle)));
    return static_cast<double>((microsecondsNow() % cycle - sent + cycle) % cycle) / 1000.0;
}

/// The process of the dongle. It runs until it is killed or `parent` ends in any way.
[[noreturn]] void serve(const std::filesystem::path& directory, pid_t parent) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) {
        std::_Exit(EXIT_FAILURE);
    }
    VirtualDongle dongle{directory,
                         {.reportInterval = std::chrono::microseconds{0}, .keepsReceivedFrames = false}};
    auto next = Clock::now();
    while (true) {
        next += std::chrono::duration_cast<Clock::duration>(
            std::chrono::duration<double>{1.0 / reportsPerSecond});
        std::this_thread::sleep_until(next);
        if (dongle.state().autoTuneChannel == 2) {
            dongle.sendReport(encodedNow());
        }
    }
}

/// Records how old each report is when the bar is first painted after it.
class PaintWatch : public QObject {
  public:
    PaintWatch(VelmorindalSwitch& velmorindal, QWidget& bar)
        : velmorindal_{velmorindal}, subscription_{velmorindal.objectWillChange.subscribe([this] {
              note();
          })} {
        bar.installEventFilter(this);
    }

    std::vector<double> latencies;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            note();
            for (const double reading : unpainted_) {
                latencies.push_back(ageOf(reading));
            }
            unpainted_.clear();
        }
        return false;
    }

  private:
    void note() {
        const double reading = velmorindal_.detectedClarity.get();
        if (reading > 0.0 && reading != last_) {
            unpainted_.push_back(reading);
            last_ = reading;
        }
    }

    VelmorindalSwitch& velmorindal_;
    ChangeNotifier::Subscription subscription_;
    std::vector<double> unpainted_;
    double last_ = 0.0;
};

/// Records how long an event from another thread waits until it is handled.
class EventWatch : public QObject {
  public:
    std::vector<double> delays;

    void post() {
        const auto posted = Clock::now();
        QMetaObject::invokeMethod(
            this,
            [this, posted] {
                delays.push_back(std::chrono::duration<double, std::milli>(Clock::now() - posted).count());
            },
            Qt::QueuedConnection);
    }
};

double percentile(std::vector<double> values, double part) {
    if (values.empty()) {
        return std::nan("");
    }
    std::ranges::sort(values);
    return values[std::min(values.size() - 1,
                           static_cast<std::size_t>(part * static_cast<double>(values.size())))];
}

double processorSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double residentMebibytes() {
    QFile statistics{QStringLiteral("/proc/self/statm")};
    if (!statistics.open(QIODevice::ReadOnly)) {
        return 0.0;
    }
    return statistics.readAll().split(' ').value(1).toDouble() *
           static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1048576;
}

void measure(const std::filesystem::path& directory, int seconds, std::FILE* results) {
    WizardDriver driver{directory};
    driver.walkTo(wizardState::Calibration);
    driver.press("Show Clarity");
    ProgressBarWidget* bar = nullptr;
    for (auto* candidate : driver.wizard().window().findChildren<ProgressBarWidget*>()) {
        if (candidate->accessibleName() == QStringLiteral("Clarity level")) {
            bar = candidate;
        }
    }
    if (bar == nullptr ||
        !WizardDriver::waitUntil([&] { return driver.velmorindal().detectedClarity.get() > 0.0; })) {
        throw std::runtime_error{"The display of clarity did not start."};
    }
    QTest::qWait(2000);  // until one-time allocations are done

    PaintWatch paints{driver.velmorindal(), *bar};
    EventWatch events;
    std::jthread poster{[&events](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            std::this_thread::sleep_for(std::chrono::milliseconds{7});
            events.post();
        }
    }};
    const double memoryBefore = residentMebibytes();
    const double processorBefore = processorSeconds();
    const auto start = Clock::now();
    QTest::qWait(seconds * 1000);
    const double wall = std::chrono::duration<double>(Clock::now() - start).count();
    const double processor = processorSeconds() - processorBefore;
    const double memoryAfter = residentMebibytes();
    poster.request_stop();
    poster.join();
    driver.press("Show Clarity");

    std::fprintf(results, "reports painted        %zu in %.0f s, %.0f a second\n", paints.latencies.size(),
                 wall, static_cast<double>(paints.latencies.size()) / wall);
    std::fprintf(results, "events wait            %.2f ms median, %.2f ms 99th percentile, %.2f ms longest\n",
                 percentile(events.delays, 0.5), percentile(events.delays, 0.99),
                 percentile(events.delays, 1.0));
    std::fprintf(results, "from report to repaint %.2f ms median, %.2f ms 99th percentile, %.2f ms longest\n",
                 percentile(paints.latencies, 0.5), percentile(paints.latencies, 0.99),
                 percentile(paints.latencies, 1.0));
    std::fprintf(results, "processor              %.1f %% of one core\n", 100.0 * processor / wall);
    std::fprintf(results, "memory                 %.1f MiB before, %.1f MiB after\n", memoryBefore,
                 memoryAfter);
}

}  // namespace
}  // namespace velmorindal

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    const velmorindal::TemporaryDirectory directory;
    const pid_t self = ::getpid();
    const pid_t dongle = ::fork();
    if (dongle == 0) {
        velmorindal::serve(directory.path(), self);
    }
    // The wizard prints hundreds of readings a second, which are dropped. The results go to the original
    // standard output.
    std::FILE* const results = ::fdopen(::dup(STDOUT_FILENO), "w");
    ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
    QStandardPaths::setTestModeEnabled(true);
    const QApplication application{argc, argv};
    velmorindal::setUpApplication();
    int status = EXIT_SUCCESS;
    try {
        velmorindal::measure(directory.path(), seconds, results);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
        status = EXIT_FAILURE;
    }
    ::kill(dongle, SIGKILL);
    ::waitpid(dongle, nullptr, 0);
    std::fclose(results);
    return status;
}

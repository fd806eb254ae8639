// Helper runs that pass everything on to the real ones and measure them.
#pragma once

#include "benchmarks/flood/main_thread_watch.h"
#include "interfaces/system.h"

#include <atomic>
#include <chrono>
#include <utility>

namespace oxlade::benchmarks {

class TimedProcesses final : public HelperProcesses {
  public:
    explicit TimedProcesses(HelperProcesses& real) : real_{real} {}

    std::shared_ptr<HelperProcess> make(std::string path,
                                        std::vector<std::string> arguments) override {
        return std::make_shared<Timed>(real_.make(std::move(path), std::move(arguments)), *this);
    }
    /// From the launch of the last run until its exit was noticed; 0 before that.
    double milliseconds() const { return milliseconds_; }
    /// Processor seconds of the thread that reads the output, in the same time.
    double readerSeconds() const { return readerSeconds_; }

  private:
    using Clock = std::chrono::steady_clock;

    class Timed final : public HelperProcess {
      public:
        Timed(std::shared_ptr<HelperProcess> real, TimedProcesses& all)
            : real_{std::move(real)}, all_{all} {}
        void setReadabilityHandler(ReadabilityHandler handler) override {
            real_->setReadabilityHandler(std::move(handler));
        }
        void setTerminationHandler(TerminationHandler handler) override {
            real_->setTerminationHandler([this, handler = std::move(handler)] {
                all_.readerSeconds_ = threadSeconds();
                all_.milliseconds_ =
                    std::chrono::duration<double, std::milli>(Clock::now() - launched_).count();
                handler();
            });
        }
        std::optional<std::string> launch() override {
            launched_ = Clock::now();
            return real_->launch();
        }
        std::int32_t terminationStatus() const override { return real_->terminationStatus(); }

      private:
        std::shared_ptr<HelperProcess> real_;
        TimedProcesses& all_;
        Clock::time_point launched_;
    };

    HelperProcesses& real_;
    std::atomic<double> milliseconds_{0}, readerSeconds_{0};
};

} // namespace oxlade::benchmarks

// A flood from a real helper, through the real pipe, thread and queue into the real
// controller, which must end in the state that the model derives from the same chunks.
#include "platform/helper_process.h"
#include "platform/main_queue.h"
#include "tests/testing/fake_program.h"
#include "tests/testing/run_model.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <poll.h>

namespace oxlade::test {
namespace {

using Chunks = std::vector<std::string>;

/// A real process that records the chunks it reads, on the run's thread. Read them after the
/// run.
class RecordingProcess final : public HelperProcess {
  public:
    RecordingProcess(std::shared_ptr<HelperProcess> process, std::shared_ptr<Chunks> chunks)
        : process_{std::move(process)}, chunks_{std::move(chunks)} {}
    void setReadabilityHandler(ReadabilityHandler handler) override {
        if (!handler) return process_->setReadabilityHandler({});
        process_->setReadabilityHandler(
            [chunks = chunks_, handler = std::move(handler)](std::string_view bytes) {
                if (!bytes.empty()) chunks->emplace_back(bytes);
                handler(bytes);
            });
    }
    void setTerminationHandler(TerminationHandler handler) override {
        process_->setTerminationHandler(std::move(handler));
    }
    std::optional<std::string> launch() override { return process_->launch(); }
    std::int32_t terminationStatus() const override { return process_->terminationStatus(); }

  private:
    std::shared_ptr<HelperProcess> process_;
    std::shared_ptr<Chunks> chunks_;
};

/// Starts the simulated sampler, whatever the path.
class RecordingProcesses final : public HelperProcesses {
  public:
    std::shared_ptr<HelperProcess> make(std::string, std::vector<std::string> arguments) override {
        return std::make_shared<RecordingProcess>(
            real_.make(OXLADE_SIMULATOR, std::move(arguments)), chunks);
    }
    std::shared_ptr<Chunks> chunks = std::make_shared<Chunks>();

  private:
    PosixHelperProcesses real_;
};

class Flood : public ::testing::TestWithParam<std::string> {};

TEST_P(Flood, EndsInTheStateThatTheChunksAsReadMake) {
    setenv("OXLADE_SIM", GetParam().c_str(), 1); // NOLINT: no other thread yet
    FakeProgram fakes;
    const auto queue = PosixMainQueue::make();
    RecordingProcesses processes;
    const auto delegate = std::make_shared<AppDelegate>(
        System{queue, processes, fakes.files, fakes.files, fakes.defaults, fakes.dialogs,
               fakes.dialogs, fakes.session},
        fakes.interface, "https://oxlade.example/");
    delegate->applicationDidFinishLaunching();
    delegate->checkDevice();
    ASSERT_TRUE(delegate->currentTask());
    const auto logBefore = fakes.controls.logView.text.size();
    RunModel model;
    model.key = delegate->operationKey();
    model.percent = delegate->operationPercent();
    model.bar = fakes.controls.progress.value;

    struct State {
        double bar = -1;
        std::string key, geometry;
        int percent = 0;
        std::size_t logLength = 0;
    } last;
    while (delegate->currentTask()) {
        // One job at a time: the state before the last one comes from the output alone.
        last = {fakes.controls.progress.value, delegate->operationKey(), delegate->deviceGeometry(),
                delegate->operationPercent(), fakes.controls.logView.text.size()};
        fakes.trace.take();
        pollfd waiting{queue->readableDescriptor(), POLLIN, 0};
        ASSERT_EQ(poll(&waiting, 1, 60'000), 1);
        queue->run(std::chrono::milliseconds{0});
    }
    for (const auto& chunk : *processes.chunks) model.take(chunk);

    EXPECT_EQ(last.bar, model.bar);
    EXPECT_EQ(last.key, model.key);
    EXPECT_EQ(last.percent, model.percent);
    EXPECT_EQ(last.geometry, model.geometry);
    const auto& log = fakes.controls.logView.text;
    EXPECT_TRUE(log.substr(logBefore, last.logLength - logBefore) == model.log);
    EXPECT_GT(model.log.size(), 1'000'000U);
    EXPECT_NE(log.find("Process exited with code 3.", last.logLength), std::string::npos)
        << log.substr(last.logLength);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Flood,
    ::testing::Values("speed=max,exit=3,flood=200000", "speed=max,exit=3,long-line=5000000",
                      "speed=max,exit=3,flood-bytes=5000000,flood=100000,nul,invalid-utf8",
                      "speed=max,exit=3,nul-bytes=3000000,nul-line=3000000",
                      "speed=max,exit=3,split=7,flood=120000"),
    [](const auto& test) {
        std::string name;
        for (const char c : test.param.substr(17))
            if (std::isalnum(static_cast<unsigned char>(c)) != 0) name += c;
        return name;
    });

} // namespace
} // namespace oxlade::test

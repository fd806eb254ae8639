#pragma once

#include "tests/simulator/helper_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace oxlade::simulator::test {

// The real program with a small image of its own for each test.
class SimulatorTest : public testing::Test {
  protected:
    SimulatorTest() {
        for (unsigned at = 0; at < 200000; ++at)
            image += static_cast<char>((at * 2654435761U) >> 24U);
        writeFile(imagePath, image);
    }

    // Options that add the words to those of a run without pauses.
    static Options with(const std::string& words) {
        Options options;
        options.behaviour = "speed=max," + words;
        return options;
    }

    HelperRun flash(const Options& options = {}) {
        return HelperRun(folder, {"--firmware", imagePath, "--yes"}, options);
    }
    HelperRun check(const Options& options = {}) { return HelperRun(folder, {"--info"}, options); }

    std::string flashBytes() const { return bytesOf(folder.path("flash")); }
    std::string flashState() const { return bytesOf(folder.path("flash.state")); }
    bool flashIsWhole() const {
        return flashBytes() == image &&
               flashState() == "whole " + std::to_string(image.size()) + "\n";
    }
    // The flash as it is when that much of the image stands in it.
    std::string partOfImage(unsigned percent) const {
        const std::size_t bytes = image.size() * percent / 100;
        return image.substr(0, bytes) + std::string(flashExtent - bytes, '\xFF');
    }
    void openGate() const { writeFile(folder.path("gate"), ""); }
    // The word for a gate of this test's own.
    std::string gateAt(const std::string& place) const {
        return "gate=" + folder.path("gate") + "@" + place;
    }

    // The sectors that the image needs, in bytes.
    static constexpr std::size_t flashExtent = 262144;

    static constexpr const char* greeting =
        "Searching for the MPC4000...\n"
        "Note: this is the Oxlade simulator. No real sampler is touched.\n"
        "MPC4000 found in OS Loader mode.\n"
        "Flash geometry: 64 sectors of 65536 bytes (simulated MPC4000)\n";

    TemporaryFolder folder;
    std::string imagePath = folder.path("an image.bin");
    std::string image;
};

} // namespace oxlade::simulator::test

// The heart of the suite: for each thing that can happen, all that the program
// does, in its order. A refresh stands as one line with its changes under it; an
// update of the buttons ends with those that are enabled.
#pragma once

#include "tests/testing/fixture.h"

namespace oxlade::test {

class OrderTraces : public ControllerTest {
  protected:
    const std::string ownImage = "/home/user/a b.bin";
};

} // namespace oxlade::test

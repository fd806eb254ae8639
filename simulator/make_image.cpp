#include "simulator/image.h"

#include <fstream>
#include <iostream>

// Writes the generated OS image to the file named by the one argument. Exit
// status 64 for anything but one argument, 73 when the file cannot be written.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: oxlade_make_image OUTPUT\n";
        return 64;
    }
    std::ofstream file(argv[1], std::ios::binary | std::ios::trunc);
    file << oxlade::simulator::generateImage();
    file.close();
    if (file) return 0;
    std::cerr << "oxlade_make_image: cannot write " << argv[1] << '\n';
    return 73;
}

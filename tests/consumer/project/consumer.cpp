// The installed headers from C++: declarations have C linkage, and both libraries are found.
#include <kepcore.h>
#include <keps.h>
#include <string>
#include <vector>

int main(int argc, char **argv) {
    std::vector<Kep64fc> spectrum(100);
    const Kep64fc value = {1.0, -1.0};
    if (kepsSet_64fc(value, spectrum.data(), 100) != kepStatusOk) return 1;
    if (spectrum[99].re != 1.0 || spectrum[99].im != -1.0) return 1;
    if (kepsZero_64fc(nullptr, 100) != kepStatusNullPointer) return 1;
    const std::string version = kepsGetLibVersion()->version;
    return argc == 2 && version.compare(0, std::string(argv[1]).size(), argv[1]) == 0 ? 0 : 1;
}

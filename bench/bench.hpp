// The bench runner's interface. A case is a pair of actions that do the same work, ours and a
// peer's; the runner checks that their results agree, times them interleaved in one process on one
// core, and prints medians and their ratio as a table.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace bench {

struct Case {
    std::string family;           // what `./kep bench <family>` selects
    std::string name;             // the function, and what sets the case apart
    std::int64_t n;               // elements per call
    std::string peer;             // who is compared with
    std::function<void()> ours;   // one call
    std::function<void()> theirs; // one call of the peer's
    // True when both, called once each, gave the same result within the case's tolerance.
    std::function<bool()> agree;
    // True for cases that compare numbers of threads: they run on all cores.
    bool isThreaded = false;
};

// Set by --large: a family's cases that take minutes, in place of the others.
inline bool large = false;

// Adds a case; it owns its buffers through its actions' captures. Call it from a registrar:
//   const bench::Family family("fft", [] { bench::add({...}); });
void add(Case c);

// Runs a function that adds a family's cases before the benches start, when it is selected.
struct Family {
    Family(const char *name, void (*addCases)());
};

} // namespace bench

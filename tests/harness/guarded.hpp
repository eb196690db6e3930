// Memory between unreadable pages, and calls whose side effects on the processor's state are held
// against the calling convention.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace harness {

// Where an array lies in its room.
struct Spot {
    enum Kind { endsAtGuard, beginsAtGuard, inside } kind;
    int offset = 0; // bytes behind a 64-byte boundary, for inside
};

// Pages with an unreadable page on either side. Everything that is not the array holds a canary.
class Room {
public:
    explicit Room(std::size_t bytes);
    ~Room();
    Room(const Room &) = delete;
    Room &operator=(const Room &) = delete;

    // Fills the room with canaries and gives the address of an array of bytes bytes.
    std::uint8_t *place(std::size_t bytes, Spot spot);
    // True when no byte outside the placed array has changed.
    bool intact() const;

private:
    std::uint8_t *mapping, *begin;
    std::size_t mapped, held;
    std::uint8_t *array = nullptr;
    std::size_t arrayBytes = 0;
};

// The bytes of a state block, those between its sub-blocks included.
std::vector<std::uint8_t> blockImage(const void *block, std::size_t bytes);

// Calls f and expects the upper vector halves clean, the direction flag clear, and both control
// words as they were.
void guardedCall(void (*f)(void *), void *context);

template <class F>
auto guarded(F f) {
    using R = decltype(f());
    struct Context {
        F *f;
        R result;
    } context{&f, {}};
    guardedCall(
        [](void *c) { static_cast<Context *>(c)->result = (*static_cast<Context *>(c)->f)(); },
        &context);
    return context.result;
}

} // namespace harness

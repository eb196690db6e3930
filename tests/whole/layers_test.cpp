// Calls go downward only: what each room's objects need is held against what lies below it.
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Symbols {
    std::set<std::string> defined, needed;
};
using Rooms = std::map<std::string, Symbols>;

// Which rooms each room may call, itself aside.
const std::map<std::string, std::set<std::string>> below = {
    {"frame", {}},
    {"arith", {"frame"}},
    {"stats", {"frame", "arith"}},
    {"transforms", {"frame", "arith"}},
    {"filters", {"frame", "arith", "stats", "transforms", "rate", "generate"}},
    {"rate", {"frame", "arith", "stats", "transforms", "filters", "generate"}},
    {"generate", {"frame", "arith", "stats", "transforms", "filters", "rate"}},
};

// "room: symbol (in another room)" for each need that no room below answers.
std::vector<std::string> upwardCalls(const Rooms &rooms) {
    std::vector<std::string> calls;
    for (const auto &[room, symbols] : rooms)
        for (const auto &name : symbols.needed) {
            if (symbols.defined.contains(name)) continue;
            std::string home;
            bool isAllowed = false;
            for (const auto &[other, theirs] : rooms)
                if (theirs.defined.contains(name)) {
                    home = other;
                    isAllowed = isAllowed || below.at(room).contains(other);
                }
            if (!home.empty() && !isAllowed) calls.push_back(room + ": " + name + " in " + home);
        }
    return calls;
}

void addObject(Symbols &symbols, const std::string &object) {
    const std::unique_ptr<FILE, int (*)(FILE *)> nm(popen(("nm '" + object + "'").c_str(), "r"),
                                                    pclose);
    ASSERT_NE(nm, nullptr);
    std::array<char, 4096> line;
    while (std::fgets(line.data(), line.size(), nm.get())) {
        // [address] kind name
        std::istringstream fields(line.data());
        std::vector<std::string> words{std::istream_iterator<std::string>(fields), {}};
        if (words.size() < 2) continue;
        const std::string &kind = words[words.size() - 2], &name = words.back();
        // Lower case is local to the object, but for weak ones.
        if (kind == "U")
            symbols.needed.insert(name);
        else if (std::isupper(static_cast<unsigned char>(kind[0])) || kind == "u")
            symbols.defined.insert(name);
    }
}

// The room of an object is the folder below the target's own, ".../keps_units.dir/<room>/...".
std::string roomOf(const std::string &object) {
    const std::string path = std::filesystem::path(object).lexically_normal();
    const std::string mark = "keps_units.dir/";
    const auto start = path.rfind(mark) + mark.size();
    return path.substr(start, path.find('/', start) - start);
}

TEST(Layers, callsGoDownwardOnly) {
    Rooms rooms;
    std::istringstream objects(KEPS_UNIT_OBJECTS);
    for (std::string object; std::getline(objects, object, ':');) {
        ASSERT_TRUE(below.contains(roomOf(object))) << object;
        addObject(rooms[roomOf(object)], object);
    }
    ASSERT_TRUE(rooms["frame"].defined.contains("e9_kepsZero_8u"));
    EXPECT_EQ(upwardCalls(rooms), std::vector<std::string>{});
}

TEST(Layers, anUpwardCallIsFound) {
    const Rooms rooms = {{"frame", {{"copy", "zero"}, {"add"}}},
                         {"arith", {{"add"}, {"copy", "kepMalloc"}}},
                         {"filters", {{"fir", "inlined"}, {"fft", "add", "copy"}}},
                         {"transforms", {{"fft", "inlined"}, {"fir", "inlined", "mean"}}},
                         {"stats", {{"mean"}, {}}}};
    const std::vector<std::string> expected = {"frame: add in arith", "transforms: fir in filters",
                                               "transforms: mean in stats"};
    EXPECT_EQ(upwardCalls(rooms), expected);
}

} // namespace

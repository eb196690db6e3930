// The shape of the built library: names, stubs, slots, imports, instructions.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <elf.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

const std::vector<std::string> declared = {
#define KEPS_NAME(name) #name,
#include "names.inc"
#undef KEPS_NAME
};

// The library's file, read as it lies on disk.
class Elf {
public:
    Elf() {
        std::ifstream file(KEPS_LIBRARY, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(file), {});
        const auto *header = at<Elf64_Ehdr>(0);
        const auto *first = at<Elf64_Shdr>(header->e_shoff);
        sections.assign(first, first + header->e_shnum);
        names = bytes.data() + sections[header->e_shstrndx].sh_offset;
    }

    template <class T>
    const T *at(std::uint64_t offset) const {
        return reinterpret_cast<const T *>(bytes.data() + offset);
    }

    const Elf64_Shdr *section(const std::string &name) const {
        for (const auto &s : sections)
            if (name == names + s.sh_name) return &s;
        return nullptr;
    }

    template <class T>
    std::vector<T> table(const std::string &name) const {
        const Elf64_Shdr *s = section(name);
        if (!s) return {};
        const T *first = at<T>(s->sh_offset);
        return {first, first + s->sh_size / sizeof(T)};
    }

    std::string text(const std::string &table, std::uint64_t index) const {
        return at<char>(section(table)->sh_offset + index);
    }

    // The file's bytes of a mapped address.
    const std::uint8_t *mapped(std::uint64_t address) const {
        for (const auto &s : sections)
            if (s.sh_type == SHT_PROGBITS && address >= s.sh_addr &&
                address < s.sh_addr + s.sh_size)
                return at<std::uint8_t>(s.sh_offset + address - s.sh_addr);
        return nullptr;
    }

    std::map<std::string, Elf64_Sym> symbols(bool dynamic) const {
        std::map<std::string, Elf64_Sym> found;
        for (const auto &s : table<Elf64_Sym>(dynamic ? ".dynsym" : ".symtab"))
            found[text(dynamic ? ".dynstr" : ".strtab", s.st_name)] = s;
        return found;
    }

private:
    std::vector<char> bytes;
    std::vector<Elf64_Shdr> sections;
    const char *names;
};

const Elf &library() {
    static const Elf elf;
    return elf;
}

TEST(Shape, exportsAreTheDeclaredNamesInDescendingOrder) {
    EXPECT_TRUE(std::is_sorted(declared.rbegin(), declared.rend()));
    std::set<std::string> exported;
    for (const auto &[name, s] : library().symbols(true))
        if (s.st_shndx != SHN_UNDEF && !name.empty()) exported.insert(name);
    EXPECT_EQ(std::set<std::string>(declared.begin(), declared.end()), exported);
}

TEST(Shape, stubsJumpThroughTheirSlotsInOrder) {
    const auto exported = library().symbols(true);
    const auto all = library().symbols(false);
    const std::uint64_t slots = all.at("arraddr").st_value;
    std::map<std::uint64_t, Elf64_Rela> relocations;
    for (const auto &r : library().table<Elf64_Rela>(".rela.dyn")) relocations[r.r_offset] = r;
    std::uint64_t expectedStub = exported.at(declared[0]).st_value;
    for (std::size_t i = 0; i < declared.size(); ++i, expectedStub += 32) {
        const std::string &name = declared[i];
        const Elf64_Sym &stub = exported.at(name);
        ASSERT_EQ(expectedStub, stub.st_value) << name;
        ASSERT_EQ(32u, stub.st_size) << name;
        ASSERT_EQ(0u, stub.st_value % 32) << name;
        const std::uint8_t *code = library().mapped(stub.st_value);
        ASSERT_TRUE(code[0] == 0xFF && code[1] == 0x25) << name << ": not one indirect jump";
        std::int32_t distance;
        std::memcpy(&distance, code + 2, 4);
        const std::uint64_t slot = stub.st_value + 6 + static_cast<std::uint64_t>(distance);
        ASSERT_EQ(slots + 8 * i, slot) << name << ": slot out of order";
        ASSERT_TRUE(relocations.count(slot)) << name;
        ASSERT_EQ(static_cast<std::uint32_t>(R_X86_64_RELATIVE),
                  ELF64_R_TYPE(relocations[slot].r_info))
            << name;
        const Elf64_Sym &worker = all.at("e9_" + name);
        ASSERT_EQ(worker.st_value, static_cast<std::uint64_t>(relocations[slot].r_addend)) << name;
        ASSERT_EQ(STB_LOCAL, ELF64_ST_BIND(worker.st_info)) << name;
    }
    EXPECT_EQ(8 * declared.size(), library().section(".arraddr")->sh_size);
}

TEST(Shape, slotsStayWritableAndNothingRunsAtLoadButTheHook) {
    const Elf64_Shdr *slots = library().section(".arraddr");
    const auto *header = library().at<Elf64_Ehdr>(0);
    const auto *segments = library().at<Elf64_Phdr>(header->e_phoff);
    for (int i = 0; i < header->e_phnum; ++i)
        if (segments[i].p_type == PT_GNU_RELRO) {
            EXPECT_LE(segments[i].p_vaddr + segments[i].p_memsz, slots->sh_addr);
        }
    std::map<std::int64_t, std::uint64_t> dynamic;
    for (const auto &d : library().table<Elf64_Dyn>(".dynamic")) dynamic[d.d_tag] = d.d_un.d_val;
    EXPECT_EQ(library().symbols(false).at("kepsLoad").st_value, dynamic[DT_INIT]);
    EXPECT_EQ(library().symbols(false).at("kepsUnload").st_value, dynamic[DT_FINI]);
    EXPECT_EQ("libkepse9.so", library().text(".dynstr", dynamic[DT_SONAME]));
    constexpr std::int64_t packedRelocations = 36; // DT_RELR
    EXPECT_FALSE(dynamic.count(packedRelocations));
    EXPECT_FALSE(dynamic.count(DT_INIT_ARRAY));
}

TEST(Shape, noWritableDataBesideTheSlots) {
    for (const char *name : {".data", ".bss"}) {
        const Elf64_Shdr *s = library().section(name);
        EXPECT_TRUE(s == nullptr || s->sh_size == 0) << name;
    }
}

TEST(Shape, importsAreTheCompanionOpenMpAndStackProtection) {
    const std::set<std::string> companion = {"kepMalloc",     "kepMalloc_L",
                                             "kepFree",       "kepGetMaxCacheSizeB",
                                             "ownGetFeature", "ownGetNumThreads"};
    for (const auto &[name, s] : library().symbols(true)) {
        if (s.st_shndx != SHN_UNDEF || name.empty()) continue;
        const bool openMp = std::regex_match(name, std::regex("(omp_|GOMP_|__kmpc_).*"));
        EXPECT_TRUE(companion.count(name) || openMp || name == "__stack_chk_fail") << name;
    }
    bool math = false;
    for (const auto &d : library().table<Elf64_Dyn>(".dynamic")) {
        if (d.d_tag != DT_NEEDED) continue;
        const std::string name = library().text(".dynstr", d.d_un.d_val);
        math = math || name == "libm.so.6";
        EXPECT_TRUE(std::regex_match(
            name,
            std::regex("libkepcore\\.so|lib(gomp|omp)\\.so\\..*|libomp\\.so|lib[cm]\\.so\\.6")))
            << name;
    }
    EXPECT_TRUE(math);
}

// AVX and nothing above it: no fused operation, no 256-bit integer arithmetic, no gather, no
// broadcast from a register, no later bit instruction. Half-precision conversions stand in the
// functions made for them alone.
TEST(Shape, noInstructionAboveAvx) {
    std::FILE *listing = popen("objdump -d --no-show-raw-insn " KEPS_LIBRARY, "r");
    ASSERT_NE(nullptr, listing);
    const std::regex above(
        "\\tvf(n|)m(add|sub)|%zmm|%k[0-7]|\\tv(perm(q|pd|d|ps)|p?gather|pbroadcast|inserti128|"
        "extracti128|perm2i128|ps[lr][la]v|pblendd|broadcasti|pmaskmov)|"
        "\\tvbroadcasts[sd] +%xmm|\\t(andn|bextr|bls[ir]|blsmsk|bzhi|mulx|pdep|pext|rorx|sarx|shlx|"
        "shrx|lzcnt|movbe|adcx|adox) ");
    const std::regex integer256(
        "\\tvp(?!test|ermil|erm2f128)[a-z0-9]+ .*%ymm|\\tv(mpsadbw|movntdqa).*%ymm");
    const std::regex half("\\tvcvt(ph2ps|ps2ph)"), halfUnit("<e9_ownkepsCnvrt_ivx_");
    char line[512];
    std::string function;
    int lines = 0;
    while (std::fgets(line, sizeof line, listing)) {
        const char *tab = std::strchr(line, '\t');
        if (!tab) {
            if (std::strchr(line, '<')) function = line;
            continue;
        }
        ++lines;
        if (tab[1] != 'v' && !std::strchr("abmprsl", tab[1])) continue;
        const bool bad = std::regex_search(tab, above) || std::regex_search(tab, integer256) ||
                         (std::regex_search(tab, half) && !std::regex_search(function, halfUnit));
        EXPECT_FALSE(bad) << function << line;
    }
    EXPECT_EQ(0, pclose(listing));
    EXPECT_GT(lines, 1000);
}

} // namespace

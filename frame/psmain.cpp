// Load and unload hooks, given to the linker as the library's init and fini functions. The entry
// table needs no work at load: its slots are filled by relative relocations.
extern "C" {

[[gnu::visibility("hidden")]] int kepsLoad(void);
[[gnu::visibility("hidden")]] void kepsUnload(void);

int kepsLoad(void) {
    return 1;
}

void kepsUnload(void) {}
}

/* Strict C99 over the installed headers: allocate, fill, copy, compare the version. */
#include <kepcore.h>
#include <keps.h>
#include <stdio.h>
#include <string.h>

int main(int argc, char **argv) {
    enum { length = 1000 };
    Kep32f *a = kepsMalloc_32f(length), *b = kepsMalloc_32f(length);
    const KepsLibVersion *version = kepsGetLibVersion();
    char number[32];
    KepStatus status = kepsSet_32f(2.5f, a, length);
    if (status == kepStatusOk) status = kepsCopy_32f(a, b, length);
    if (status != kepStatusOk) {
        fprintf(stderr, "%s\n", kepGetStatusString(status));
        return 1;
    }
    snprintf(number, sizeof number, "%d.%d.%d", (int)version->major, (int)version->minor,
             (int)version->update);
    if (argc != 2 || strcmp(number, argv[1]) != 0) {
        fprintf(stderr, "the library says %s\n", number);
        return 1;
    }
    status = b[0] == 2.5f && b[length - 1] == 2.5f ? kepStatusOk : kepStatusBadArgument;
    kepsFree(a);
    kepsFree(b);
    return status;
}

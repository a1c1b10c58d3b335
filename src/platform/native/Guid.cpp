#include <quire/platform/native/Guid.h>

namespace {

constexpr int braced = 38; // characters of the text form, without the NUL

/// "x" in the pattern stands for a digit.
constexpr char16_t pattern[] = u"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
static_assert(sizeof pattern / sizeof *pattern == braced + 1);

} // namespace

int StringFromGUID2(REFGUID guid, LPOLESTR text, int size)
{
    if (!text || size <= braced)
        return 0;
    const BYTE bytes[16] = {static_cast<BYTE>(guid.Data1 >> 24),
                            static_cast<BYTE>(guid.Data1 >> 16),
                            static_cast<BYTE>(guid.Data1 >> 8),
                            static_cast<BYTE>(guid.Data1),
                            static_cast<BYTE>(guid.Data2 >> 8),
                            static_cast<BYTE>(guid.Data2),
                            static_cast<BYTE>(guid.Data3 >> 8),
                            static_cast<BYTE>(guid.Data3),
                            guid.Data4[0],
                            guid.Data4[1],
                            guid.Data4[2],
                            guid.Data4[3],
                            guid.Data4[4],
                            guid.Data4[5],
                            guid.Data4[6],
                            guid.Data4[7]};
    unsigned digits = 0;
    for (int i = 0; i < braced; ++i) {
        if (pattern[i] != u'x') {
            text[i] = pattern[i];
            continue;
        }
        const BYTE byte = bytes[digits / 2];
        text[i] = u"0123456789ABCDEF"[digits % 2 == 0 ? byte >> 4 : byte & 0xF];
        ++digits;
    }
    text[braced] = 0;
    return braced + 1;
}

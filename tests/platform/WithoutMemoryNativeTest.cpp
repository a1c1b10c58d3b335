#include <gtest/gtest.h>

#include <quire/platform/Automation.h>
#include <quire/platform/System.h>

#include "support/NoMemory.h"

TEST(WithoutMemoryNative, AStringFreesTheTextThatItCannotTakeOver)
{
    const __int64 texts = Platform::liveBstrs();
    HRESULT raised = S_OK;
    {
        const NoMemory memory(1);
        try {
            const _bstr_t string(u"desk");
        } catch (const _com_error &error) {
            raised = error.Error();
        }
    }
    EXPECT_EQ(raised, E_OUTOFMEMORY);
    EXPECT_EQ(Platform::liveBstrs(), texts);
}

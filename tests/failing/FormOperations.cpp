#include "failing/FailureLoop.h"

#include <quire/forms/FormCache.h>

// The forms that the server has delivered.

using namespace Quire;

namespace Failing::FormCalls {

namespace {

QString getForm(World &)
{
    const FormData *const form = FormCache::getForm(text("STORY"));
    return form ? text("%1, %2 fields").arg(form->m_FormName).arg(form->m_Fields.size()) : text("none");
}

QString getFormTwice(World &world)
{
    getForm(world);
    return getForm(world);
}

void forgetForms(World &)
{
    FormCache::Clear();
}

const std::vector<Operation> operations{
    {"FormCache::getForm",
     anyState,
     forgetForms,
     getForm,
     "STORY, 1 fields",
     "none",
     {{"GetSystemForm", Fails | Empty, "-"}}},
    // A form that was not delivered is asked for again.
    {"FormCache::getForm, twice",
     anyState,
     forgetForms,
     getFormTwice,
     "STORY, 1 fields",
     "none",
     {{"get_Connected GetSystemForm", Fails | Empty, "="}}},
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Form, FailureLoop, ::testing::ValuesIn(operations), nameOfTest);

} // namespace Failing::FormCalls

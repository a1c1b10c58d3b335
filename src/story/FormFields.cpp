#include "FormFields.h"

#include <quire/forms/FormData.h>

namespace Quire {

Field *findFormField(FormData *form, const QString &name)
{
    if (!form)
        return nullptr;
    for (Field &field : form->m_Fields) {
        if (field.m_Id.compare(name, Qt::CaseInsensitive) == 0)
            return &field;
    }
    return nullptr;
}

std::vector<Attribute> formAttributes(const FormData *form)
{
    std::vector<Attribute> attributes;
    if (!form)
        return attributes;
    attributes.reserve(form->m_Fields.size());
    for (const Field &field : form->m_Fields)
        attributes.push_back({field.m_Id, field.m_Label, 0});
    return attributes;
}

} // namespace Quire

#include "StoryFields.h"

#include <algorithm>
#include <memory>

#include <quire/XML.h>
#include <quire/forms/AttributeCodec.h>
#include <quire/forms/FormCache.h>

#include "MarkupWalk.h"
#include "SectionName.h"

namespace Tool {

namespace {

/// The text directly within an element.
QString textOf(const XML::NamedTag &element)
{
    QString text;
    for (const XML::Tag *child = element.m_Child; child; child = child->m_Next)
        if (const auto *data = dynamic_cast<const XML::TextTag *>(child))
            text += data->m_Text;
    return text;
}

} // namespace

StoryFields::StoryFields(StoryAccess &story)
{
    addForm(story.story().FormName());
    addStored(story);
    addComputed(story);
}

StoryFields::StoryFields(const QString &form)
{
    addForm(form);
}

const StoryField *StoryFields::find(const QString &name) const
{
    const auto found = std::find_if(m_fields.begin(), m_fields.end(), [&name](const StoryField &field) {
        return field.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == m_fields.end() ? nullptr : &*found;
}

StoryField *StoryFields::findField(const QString &name)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): the fields are ours
    return const_cast<StoryField *>(find(name));
}

void StoryFields::addForm(const QString &name)
{
    const Quire::FormData *const form = Quire::FormCache::getForm(name);
    if (!form)
        return;
    for (const Quire::Field &field : form->m_Fields) {
        if (!find(field.m_Id))
            m_fields.push_back({field.m_Id, field.m_Label, QString(), true, field.m_ReadOnly});
    }
}

void StoryFields::addStored(StoryAccess &story)
{
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(story.section(StorySection::Fields, true)));
    MarkupWalk walk(*root);
    while (walk.next()) {
        const auto *element = dynamic_cast<XML::NamedTag *>(&walk.node());
        const QString name = element ? element->m_Attributes.value(QStringLiteral("id")) : QString();
        if (name.isEmpty())
            continue;
        if (!find(name))
            m_fields.push_back({name, QString(), QString(), false, Quire::IsAttributeReadOnly(name)});
        QString value = textOf(*element);
        if (story.storesEncoded())
            Quire::DecodeAttribute(name, value);
        findField(name)->value = value;
    }
}

void StoryFields::addComputed(StoryAccess &story)
{
    for (const Quire::Attribute &shown : story.shownFields()) {
        StoryField *const field = findField(shown.name);
        if (field && field->value.isEmpty())
            field->value = shown.value;
    }
}

} // namespace Tool

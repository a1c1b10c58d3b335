#include "FormChecks.h"

#include <algorithm>
#include <cstddef>
#include <memory>

#include <quire/forms/AttributeCodec.h>
#include <quire/forms/FormData.h>
#include <quire/markup/NamedTag.h>
#include <quire/markup/Parser.h>

namespace FormFuzz {

namespace {

using Quire::Field;

const QString anything; // a null string, which a search takes for a match

void readLength(XML::Tag &element, const char *name, qint32 &length)
{
    const QString value = element.FindAttribute(QLatin1String(name));
    if (!value.isNull())
        length = value.toLower().toInt() / 4;
}

void readStyle(XML::Tag &element, const char *name, qint32 &style)
{
    const QString value = element.FindAttribute(QLatin1String(name));
    if (value.isNull())
        return;
    style = 0;
    if (value.toLower() == QLatin1String("b"))
        style |= 1;
    if (value.toLower() == QLatin1String("i"))
        style |= 2;
    if (value.toLower() == QLatin1String("u"))
        style |= 4;
}

void readAlign(XML::Tag &element, qint32 &align)
{
    const QString value = element.FindAttribute(QStringLiteral("align"));
    if (value.isNull())
        return;
    align = 0;
    if (value.toLower() == QLatin1String("right"))
        align = 2;
    else if (value.toLower() == QLatin1String("center"))
        align = 1;
}

/// The reading of one element, step by step; false when it names no field.
bool read(XML::NamedTag &element, Field &field)
{
    bool named = false;
    const QString id = element.FindAttribute(QStringLiteral("idref"));
    if (!id.isNull()) {
        field.m_Id = id;
        field.m_ReadOnly = Quire::IsAttributeReadOnly(id);
        named = true;
    }
    field.m_ReadOnly = element.HasAttribute(QStringLiteral("ro"));
    if (field.m_ReadOnly) {
        const QString value = element.FindAttribute(QStringLiteral("ro"));
        if (!value.isNull())
            field.m_ReadOnly = value.toLower() != QLatin1String("no");
    }
    readLength(element, "length", field.m_Length);
    readStyle(element, "style", field.m_Style);
    readAlign(element, field.m_Align);
    field.m_Label = element.GetEnclosedTextItem();
    readLength(element, "llength", field.m_LabelLength);
    readStyle(element, "lstyle", field.m_LabelStyle);
    if (element.FindAttribute(QStringLiteral("lalign")).isNull())
        field.m_LabelAlign = 0;
    return named;
}

XML::NamedTag *nth(XML::Tag &within, const char *name, int n)
{
    return dynamic_cast<XML::NamedTag *>(within.FindNthTag(QLatin1String(name), n, anything, anything, true));
}

bool isSame(const QString &a, const QString &b)
{
    return a == b && a.isNull() == b.isNull();
}

bool isSame(const Field &a, const Field &b)
{
    return isSame(a.m_Id, b.m_Id) && a.m_Length == b.m_Length && a.m_Style == b.m_Style && a.m_Align == b.m_Align &&
           isSame(a.m_Label, b.m_Label) && a.m_LabelLength == b.m_LabelLength && a.m_LabelStyle == b.m_LabelStyle &&
           a.m_LabelAlign == b.m_LabelAlign && a.m_ReadOnly == b.m_ReadOnly && a.m_Extra == b.m_Extra;
}

bool isStyle(qint32 style)
{
    return style == 0 || style == 1 || style == 2 || style == 4;
}

bool isPossible(const Field &field)
{
    return !field.m_Id.isNull() && isStyle(field.m_Style) && isStyle(field.m_LabelStyle) && field.m_Align >= 0 &&
           field.m_Align <= 2 && field.m_LabelAlign == 0 && field.m_Extra == 0 && field.Width() >= field.m_Length &&
           field.Width() >= field.m_LabelLength;
}

} // namespace

std::vector<Field> fieldsBySearching(const QString &text)
{
    std::vector<Field> fields;
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(text));
    auto *form = dynamic_cast<XML::NamedTag *>(root->FindTag(QStringLiteral("zeko:form"), anything, anything));
    if (!form)
        return fields;
    Field ofForm;
    read(*form, ofForm);
    for (int r = 0; XML::NamedTag *row = nth(*form, "zeko:row", r); ++r) {
        Field ofRow = ofForm;
        read(*row, ofRow);
        for (int c = 0; XML::NamedTag *cell = nth(*row, "zeko:cell", c); ++c) {
            Field ofCell = ofRow;
            if (read(*cell, ofCell))
                fields.push_back(ofCell);
        }
    }
    return fields;
}

QString difference(const std::vector<Field> &a, const std::vector<Field> &b)
{
    if (a.size() != b.size())
        return QStringLiteral("%1 fields and %2").arg(a.size()).arg(b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!isSame(a[i], b[i]))
            return QStringLiteral("field %1, %2 and %3, differs").arg(i).arg(a[i].m_Id, b[i].m_Id);
    }
    return QString();
}

QString checkForm(const QString &text)
{
    const Quire::FormData form(QStringLiteral("FORM"), text);
    if (form.m_FormName != QLatin1String("FORM"))
        return QStringLiteral("not the name that was given");
    if (!std::all_of(form.m_Fields.begin(), form.m_Fields.end(), isPossible))
        return QStringLiteral("a field with an impossible value");
    return difference(form.m_Fields, fieldsBySearching(text));
}

} // namespace FormFuzz

#pragma once

/// \file
/// An element of a markup tree.

#include <QMap>

#include <quire/markup/Tag.h>

namespace XML {

/// Takes over the writing of an element. Gets the arguments of TagToText; answers true to let the usual text of the
/// element follow, false to suppress it.
using TagToTextCallback = bool (*)(Tag *tag, QString &out, QChar terminator, bool contentOnly, bool textOnly);

/// An element: a name and attributes, sorted by name, each with one value.
///
/// Ownership and threads as for Tag. The callbacks of the writer are process-wide: they are set before other threads
/// write trees.
class QUIRE_EXPORT NamedTag : public Tag
{
public:
    bool m_WriteEndTag = true;  ///< Written without children: a separate end tag, or (false) "/" before ">".
    bool m_OmitIfEmpty = false; ///< Not written without a child, or when the first child is a TextTag of empty text.
    bool m_BareValues = false;  ///< Attribute values that contain no blank are written without quotes.
    bool m_ContentOnly = false; ///< Only the children are written.

    QString m_Name;                      ///< The name, prefix included.
    QMap<QString, QString> m_Attributes; ///< Values by name.

    /// The name of the attribute that NextAttribute answers next, null when the walk is over or none was begun. A name
    /// stays good whatever happens to the attributes meanwhile, and in a copy of the element.
    QString m_AttrIter;

    /// An element called \a name without attributes.
    explicit NamedTag(const QString &name);
    NamedTag(const NamedTag &other);            ///< As Tag's.
    NamedTag &operator=(const NamedTag &other); ///< As Tag's.
    ~NamedTag() override;

    /// Asks the callbacks, that of the element's name and then the general one, and unless one of them answers false
    /// goes on with TagToTextNoCB.
    void TagToText(QString &out, QChar terminator, bool contentOnly, bool textOnly) override;
    bool TagMatch(const QString &name, const QString &attrName, const QString &attrValue) override;
    /// The value of \a attrName. A missing attribute is added with a null value, which later is written as an empty
    /// one, and null is the answer. HasAttribute asks without adding.
    QString FindAttribute(const QString &attrName) override;
    /// Sets \a attrName to \a value in place of any former value.
    void AddAttribute(const QString &attrName, const QString &value) override;
    void DeleteAttribute(const QString &attrName) override;
    void ClearAttributes() override;
    bool Is_or_IsChildOf(const QString &name) override;
    /// The text of the first child if that is a TextTag, otherwise a null string. Later children do not count.
    QString GetEnclosedTextItem() override;
    QString GetName() override;
    /// As Tag::Copy; the four switches and the place of the attribute walk are copied too.
    Tag *Copy() override;

    /// Gives the element another name.
    virtual void ReName(const QString &name);

    /// Reads name and attributes from \a params, the inside of a start tag.
    ///
    /// The name ends at the first blank. Then come keys, each alone, with =value up to the next white space, or with
    /// ="value" up to the next double quote; single quotes mean nothing. A key without value, or with an empty quoted
    /// one, gets a null value; a repeated key keeps the last; a "=" in the place of a key ends the reading. Nothing is
    /// decoded. Attributes that the element had before stay.
    virtual void SetParams(const QString &params);

    /// Whether the element has the attribute. Never adds it.
    virtual bool HasAttribute(const QString &attrName);

    /// The number of attributes.
    virtual long AttributeCount();

    /// NextAttribute from the start.
    virtual bool FirstAttribute(QString &name, QString &value);

    /// Answers the attributes one after the other, in the order of their names; \a restart begins anew. False, with
    /// \a name and \a value untouched, when there is none left.
    virtual bool NextAttribute(QString &name, QString &value, bool restart);

    /// TagToText of the element itself without asking its callbacks; those of its descendants are asked.
    virtual void TagToTextNoCB(QString &out, QChar terminator, bool contentOnly, bool textOnly);

    /// Sets the callback that is asked for every element; null removes it.
    static void SetTagToTextCallback(TagToTextCallback callback);

    /// Sets the callback of the elements called \a name, which is asked before the general one; null removes it.
    static void SetTagToTextCallback(const QString &name, TagToTextCallback callback);

    static TagToTextCallback sTTT_CB;                         ///< The general callback, null at first.
    static QMap<QString, TagToTextCallback> sTagCallbacksMap; ///< The callbacks by element name, none at first.

private:
    friend class TagWriter;

    bool AskCallbacks(QString &out, QChar terminator, bool contentOnly, bool textOnly);
};

} // namespace XML

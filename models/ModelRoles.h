#pragma once

/// \file
/// What the models tell of a row beside its texts.

#include <Qt>

namespace Quire {

/// The roles that all models share. A role without a meaning for a row gives an invalid QVariant.
enum ModelRole {
    /// QString. Directories and queues: the path. Stories and hits: the story identifier, see String2StoryID. Fields:
    /// the name of the field.
    IdentifierRole = Qt::UserRole + 1,
    NameRole, ///< QString: the name as the server gives it, whatever the column.
    PathRole, ///< QString: the path of the directory or queue; of stories and hits that of the queue that holds them.
    TypeRole, ///< int: an ItemType.
    LockRole, ///< QString, there only on what is locked: "E" for an edit lock of a directory or queue, otherwise empty;
              ///< of a story what its header says. That somebody edits a story shows in no list: Story::IsLocked tells.
    UrgencyRole, ///< int: 0, 1 or 2, how urgent the cell is; in the column of the name, the most urgent of the story.
    FlagsRole,   ///< int: the flags of the cell's attribute, see Attribute.
    CountRole,   ///< int: the number of entries that the server tells of a sub-directory.
    IndexedRole, ///< bool: searches find what is in the directory or queue.
    ConfirmEditRole, ///< bool: edits in the directory or queue are to be confirmed.
    InvertedRole,    ///< bool: it is listed in inverted order.
    SortedRole,      ///< bool: it is sorted.
    ReadOnlyRole,    ///< bool: people may not edit the field.
    PendingRole,     ///< bool: the value was set here, and the server has not taken it yet.
    WidthRole,       ///< int, of a column's header: its width in characters, as the form has it.
    StyleRole        ///< int, of a column's header: Field::m_Style.
};

} // namespace Quire

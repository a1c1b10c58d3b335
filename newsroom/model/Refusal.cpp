#include <quire/newsroom/model/Refusal.h>

namespace Newsroom {

QString description(Refusal refusal)
{
    switch (refusal) {
    case Refusal::None:
        return {};
    case Refusal::InvalidArgument:
        return QStringLiteral("The argument is not valid.");
    case Refusal::ServerNotFound:
        return QStringLiteral("There is no news server of this name.");
    case Refusal::NotAuthorized:
        return QStringLiteral("The user is not authorized to do this.");
    case Refusal::BadSyntax:
        return QStringLiteral("The query cannot be understood.");
    case Refusal::EntryExists:
        return QStringLiteral("The entry exists already.");
    case Refusal::EntryGone:
        return QStringLiteral("The entry no longer exists.");
    case Refusal::StoryBeingEdited:
        return QStringLiteral("Another user is editing the story.");
    case Refusal::Locked:
        return QStringLiteral("The story or queue is locked.");
    case Refusal::PurgeLocked:
        return QStringLiteral("Nothing may be deleted from this queue.");
    case Refusal::NotSignedOn:
        return QStringLiteral("The user is not signed on.");
    case Refusal::PartialFailure:
        return QStringLiteral("Some of the stories could not be deleted.");
    case Refusal::ReadOnlyWire:
        return QStringLiteral("Wire stories are read-only.");
    case Refusal::NoForm:
        return QStringLiteral("The queue has no form for a new story.");
    case Refusal::MarkupSyntax:
        return QStringLiteral("The story markup has a syntax error.");
    case Refusal::Offline:
        return QStringLiteral("The newsroom is offline.");
    case Refusal::OutOfSessions:
        return QStringLiteral("The newsroom has no room for another session.");
    }
    return {};
}

} // namespace Newsroom

// Reads the form that the stories of a queue are shown in: which fields there are, what they are called, how wide they
// are and which of them people may change; and how values look to people and on the server.

#include "Session.h"

namespace {

void printForm(const Quire::FormData &form)
{
    print(QString("%1, %2 fields").arg(form.m_FormName).arg(form.m_Fields.size()));
    for (const Quire::Field &field : form.m_Fields) {
        const bool readOnly = field.m_ReadOnly || Quire::IsAttributeReadOnly(field.m_Id);
        print(QString("  %1 %2 %3 characters%4")
                  .arg(field.m_Id, -13)
                  .arg(field.m_Label, -10)
                  .arg(field.Width(), 3)
                  .arg(QString(readOnly ? ", read-only" : "")));
    }
}

void printValue(const QString &field, const QString &written)
{
    QString stored = written;
    Quire::EncodeAttribute(field, stored);
    QString shown = stored;
    Quire::DecodeAttribute(field, shown);
    print(QString("  %1 \"%2\" is stored as %3 and shown as \"%4\"").arg(field, -11).arg(written, stored, shown));
}

} // namespace

int main()
{
    return withSession([](Newsroom::Server &) {
        Quire::Queue queue(Quire::QuireCOM::TheQuireCOM->GetCachedDir("SHOWS.EVENING.RUNDOWN"));
        std::vector<Quire::Attribute> fields;
        queue.RetrieveFields(fields);
        print(QString("The stories of %1 have %2 fields.").arg(queue.Name()).arg(fields.size()));
        if (const Quire::FormData *form = Quire::FormCache::getForm("RUNDOWN"))
            printForm(*form);
        printValue("audio-time", "2:05");
        printValue("tape-time", "75");
        printValue("back-time", "18:01:00");
        printValue("cume-time", "+1:30");
    });
}

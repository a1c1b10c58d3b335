#include "NewsServer.h"

#include <QCoreApplication>
#include <QDir>

#include <quire/orvex/Orvex.h>

namespace Desk {

namespace {

QString serverText(const char *text)
{
    return QCoreApplication::translate("Desk::NewsServer", text);
}

bool isRegistered()
{
    IClassFactoryPtr factory;
    return SUCCEEDED(CoGetClassObject(__uuidof(Orvex::Signon), CLSCTX_ALL, nullptr, IID_IClassFactory,
                                      reinterpret_cast<void **>(&factory)));
}

} // namespace

NewsServer::NewsServer(const Options &options)
{
    if (!options.newsroom.isEmpty()) {
        m_name = QDir(options.newsroom).dirName();
        m_store = Newsroom::Store::open(options.newsroom, &m_error);
        serve(m_store ? m_store->model() : nullptr);
    } else if (options.stories > 0) {
        m_name = serverText("generated newsroom");
        serve(Newsroom::generatedModel({options.stories, 1}));
    } else if (!options.builtIn && isRegistered()) {
        m_name = serverText("registered server");
    } else {
        m_name = serverText("built-in newsroom");
        serve(Newsroom::sampleModel(&m_error));
    }
}

void NewsServer::serve(const std::shared_ptr<Newsroom::Model> &model)
{
    if (!model)
        return;
    m_server = std::make_unique<Newsroom::Server>(model);
    m_registration = m_server->registerClass();
}

Newsroom::User NewsServer::firstUser() const
{
    return m_server ? m_server->model()->users().value(0) : Newsroom::User();
}

} // namespace Desk

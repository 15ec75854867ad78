#include "platform/automation/ComponentLoader.h"

#include "platform/automation/AutomationError.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QMetaMethod>
#include <QPluginLoader>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

const QString interfaceId = u"QIR.Component/1"_s;
const QString interfaceFamily = u"QIR.Component/"_s;

// Where the library of an identifier was found, or what was met on the way.
struct Search {
    QString library;
    QStringList otherVersions; // libraries that name the identifier under another version of the interface
};

Search findLibrary(const QString &progId, const QStringList &folders) {
    Search search;
    for (const QString &folder : folders) {
        const QDir directory(folder);
        for (const QString &name : directory.entryList(QDir::Files, QDir::Name)) {
            if (!QLibrary::isLibrary(name))
                continue;
            const QString path = directory.absoluteFilePath(name);
            const QJsonObject metaData = QPluginLoader(path).metaData(); // reads the file, loads nothing
            const QString id = metaData[u"IID"_s].toString();
            const QJsonArray served = metaData[u"MetaData"_s].toObject()[u"ProgIDs"_s].toArray();
            if (!id.startsWith(interfaceFamily) || !served.contains(progId))
                continue;
            if (id == interfaceId) {
                search.library = path;
                return search;
            }
            search.otherVersions += u"%1 (%2)"_s.arg(path, id);
        }
    }
    return search;
}

QObject *createInstance(QObject *root, const QString &progId, const QString &library) {
    const QMetaObject *metaObject = root->metaObject();
    const int index = metaObject->indexOfMethod("CreateInstance(QString)");
    if (index < 0 || metaObject->method(index).methodType() == QMetaMethod::Signal ||
        metaObject->method(index).returnMetaType() != QMetaType::fromType<QObject *>())
        throw AutomationError(u"%1: its root object %2 has no invokable QObject *CreateInstance(QString)."_s.arg(
            library, QString::fromLatin1(metaObject->className())));
    QObject *instance = nullptr;
    QString argument = progId;
    void *values[] = {&instance, &argument};
    root->qt_metacall(QMetaObject::InvokeMetaMethod, index, values);
    if (!instance)
        throw AutomationError(u"%1: CreateInstance(\"%2\") gave no instance."_s.arg(library, progId));
    return instance;
}

} // namespace

QStringList componentFolders() {
    QStringList folders = qEnvironmentVariable("QIR_COMPONENT_PATH").split(u':', Qt::SkipEmptyParts);
    const QString programFolder = QCoreApplication::applicationDirPath();
    folders += programFolder + u"/components"_s;
    folders += QDir::cleanPath(programFolder + u"/../lib/qir/components"_s);
    return folders;
}

AutomationObject createObject(const QString &progId) {
    const QStringList folders = componentFolders();
    const Search search = findLibrary(progId, folders);
    if (search.library.isEmpty()) {
        QString text = u"No component serves \"%1\". Folders searched: %2."_s.arg(progId, folders.join(u", "_s));
        if (!search.otherVersions.isEmpty())
            text += u" Of another version of the interface than %1: %2."_s.arg(interfaceId,
                                                                               search.otherVersions.join(u", "_s));
        throw AutomationError(text);
    }
    QPluginLoader loader(search.library);
    QObject *root = loader.instance();
    if (!root)
        throw AutomationError(
            u"The component \"%1\" cannot be loaded from %2: %3"_s.arg(progId, search.library, loader.errorString()));
    return AutomationObject(createInstance(root, progId, search.library));
}

} // namespace qir

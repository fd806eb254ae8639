#include "platform/bundle.h"

#include "platform/file_system.h"

#include <QCoreApplication>
#include <QFile>
#include <QXmlStreamReader>

#include <climits>
#include <sys/stat.h>
#include <unistd.h>

namespace oxlade {

namespace {

constexpr std::size_t propertyListLimit = 1 << 20;

bool isFile(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

// Within a dictionary: the string that follows the key.
QString stringForKey(QXmlStreamReader& reader, QLatin1String wanted) {
    bool isNext = false;
    while (reader.readNextStartElement()) {
        if (isNext && reader.name() == QLatin1String("string")) return reader.readElementText();
        isNext = false;
        if (reader.name() == QLatin1String("key"))
            isNext = reader.readElementText() == wanted;
        else
            reader.skipCurrentElement();
    }
    return {};
}

} // namespace

std::string executableDirectory() {
#ifdef __linux__
    // As bytes: the path need not be UTF-8. The kernel gives no longer ones.
    std::string path(PATH_MAX, '\0');
    const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
    if (size > 0) return path.substr(0, path.rfind('/', static_cast<std::size_t>(size)));
#endif
    return QFile::encodeName(QCoreApplication::applicationDirPath()).toStdString();
}

std::string bundleVersion(QByteArrayView propertyList) {
    QXmlStreamReader reader(propertyList.toByteArray());
    reader.readNextStartElement();
    if (reader.name() != QLatin1String("plist")) return {};
    reader.readNextStartElement();
    if (reader.name() != QLatin1String("dict")) return {};
    const auto version = stringForKey(reader, QLatin1String("CFBundleShortVersionString"));
    while (!reader.atEnd()) reader.readNext(); // a later error makes the list malformed
    return reader.hasError() ? std::string() : version.toStdString();
}

QtBundle::QtBundle(std::string directory) {
    constexpr std::string_view inBundle = "/Contents/MacOS";
    path_ = contents_ = resources_ = std::move(directory);
    if (std::string_view(path_).ends_with(inBundle)) {
        path_.resize(path_.size() - inBundle.size());
        contents_ = path_ + "/Contents";
        resources_ = contents_ + "/Resources";
    }
    // An empty path would make the helper's path relative to the working directory.
    if (path_.empty()) path_ = '/';
}

std::optional<std::string> QtBundle::pathForResource(std::string_view name,
                                                     std::string_view type) const {
    std::string path = resources_ + '/';
    path += name;
    if (!type.empty()) (path += '.') += type;
    return isFile(path) ? std::optional(path) : std::nullopt;
}

std::string QtBundle::version() const {
    const auto list = PosixFileSystem().head(contents_ + "/Info.plist", propertyListLimit);
    return bundleVersion(QByteArrayView(list.data(), static_cast<qsizetype>(list.size())));
}

} // namespace oxlade

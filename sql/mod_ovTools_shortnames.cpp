#include "sql/mod_ovTools.h"

#ifdef Q_OS_WIN
#include <QVarLengthArray>

#include <windows.h>
#endif

namespace mod_ovTools {

#ifdef Q_OS_WIN
namespace {

using PathFunction = DWORD(WINAPI*)(const wchar_t*, wchar_t*, DWORD);

QString Convert(const QString& path, PathFunction function) {
    const std::wstring name = path.toStdWString();
    const DWORD size = function(name.c_str(), nullptr, 0);
    if (size == 0) {
        return path;
    }
    QVarLengthArray<wchar_t, MAX_PATH> buffer(size);
    const DWORD length = function(name.c_str(), buffer.data(), size);
    return length > 0 && length < size ? QString::fromWCharArray(buffer.data(), length) : path;
}

} // namespace

QString GetLongPath(const QString& path) { return Convert(path, ::GetLongPathNameW); }

QString GetShortPath(const QString& path) { return Convert(path, ::GetShortPathNameW); }
#else
QString GetLongPath(const QString& path) { return path; }

QString GetShortPath(const QString& path) { return path; }
#endif

} // namespace mod_ovTools

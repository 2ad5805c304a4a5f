#include "ui/mnemonics.h"

namespace {

/// Place of the letter to underline; -1 when none is free.
qsizetype FreeLetter(const QString& caption, const QSet<QChar>& taken, bool headOfWord) {
    for (qsizetype i = 0; i < caption.size(); ++i) {
        const bool atHead = i == 0 || !caption.at(i - 1).isLetterOrNumber();
        if ((atHead || !headOfWord) && caption.at(i).isLetterOrNumber() && !taken.contains(caption.at(i).toLower())) {
            return i;
        }
    }
    return -1;
}

QString AddMnemonic(const QString& caption, QSet<QChar>& taken) {
    qsizetype at = FreeLetter(caption, taken, true);
    if (at < 0) {
        at = FreeLetter(caption, taken, false);
    }
    if (at < 0) {
        return caption;
    }
    taken.insert(caption.at(at).toLower());
    return QString(caption).insert(at, u'&');
}

} // namespace

QChar MnemonicOf(const QString& caption) {
    for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
        if (caption.at(i) == u'&') {
            if (caption.at(i + 1) != u'&') {
                return caption.at(i + 1).toLower();
            }
            ++i;
        }
    }
    return {};
}

QStringList WithMnemonics(const QStringList& captions, QSet<QChar> taken) {
    for (const QString& caption : captions) {
        if (const QChar own = MnemonicOf(caption); !own.isNull()) {
            taken.insert(own);
        }
    }
    QStringList result;
    for (const QString& caption : captions) {
        result.append(MnemonicOf(caption).isNull() ? AddMnemonic(caption, taken) : caption);
    }
    return result;
}

#include "ui/mnemonics.h"

namespace {

/// Where a letter may stand, best first.
enum class MnemonicPlace { HeadOfLaterWord, HeadOfCaption, LaterWord, Anywhere };

bool IsAt(const QString& caption, qsizetype at, MnemonicPlace place) {
    const qsizetype firstBlank = caption.indexOf(u' ');
    const bool inLaterWord = firstBlank >= 0 && at > firstBlank;
    const bool atHead = at == 0 || !caption.at(at - 1).isLetterOrNumber();
    switch (place) {
    case MnemonicPlace::HeadOfLaterWord:
        return inLaterWord && atHead;
    case MnemonicPlace::HeadOfCaption:
        return at == 0;
    case MnemonicPlace::LaterWord:
        return inLaterWord;
    case MnemonicPlace::Anywhere:
        break;
    }
    return true;
}

/// The caption with a mnemonic in that place; as it is when it has one or no letter there is free.
QString AddMnemonic(const QString& caption, MnemonicPlace place, QSet<QChar>& taken) {
    if (!MnemonicOf(caption).isNull()) {
        return caption;
    }
    for (qsizetype at = 0; at < caption.size(); ++at) {
        const QChar letter = caption.at(at).toLower();
        if (letter.isLetterOrNumber() && IsAt(caption, at, place) && !taken.contains(letter)) {
            taken.insert(letter);
            return QString(caption).insert(at, u'&');
        }
    }
    return caption;
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

QStringList WithMnemonics(QStringList captions, QSet<QChar> taken) {
    for (const QString& caption : std::as_const(captions)) {
        if (const QChar own = MnemonicOf(caption); !own.isNull()) {
            taken.insert(own);
        }
    }
    for (const MnemonicPlace place : {MnemonicPlace::HeadOfLaterWord, MnemonicPlace::HeadOfCaption,
                                      MnemonicPlace::LaterWord, MnemonicPlace::Anywhere}) {
        for (QString& caption : captions) {
            caption = AddMnemonic(caption, place, taken);
        }
    }
    return captions;
}

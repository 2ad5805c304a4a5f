#pragma once

#include <QFrame>

class WrappedLabel;

/// Says why there is no Quadrix database to work on and where the settings file is, and offers another try.
class ConnectionBanner final : public QFrame {
    Q_OBJECT

public:
    explicit ConnectionBanner(QWidget* parent = nullptr);

    /// @param what "Il database Quadrix non è aperto"; @param reason what the connection said
    /// @param settingsFile path of the settings file
    void SetReason(const QString& what, const QString& reason, const QString& settingsFile);

signals:
    /// The operator wants another try.
    void Retry();

private:
    WrappedLabel* m_text;
    QString m_settingsFile;
};

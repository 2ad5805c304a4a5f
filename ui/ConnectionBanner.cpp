#include "ui/ConnectionBanner.h"

#include "ui/WrappedLabel.h"

#include <QDesktopServices>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QUrl>
#include <QVBoxLayout>

ConnectionBanner::ConnectionBanner(QWidget* parent)
    : QFrame(parent),
      m_text(new WrappedLabel) {
    setObjectName("frmConnection");
    setFrameShape(StyledPanel);
    auto* icon = new QLabel;
    const int size = style()->pixelMetric(QStyle::PM_LargeIconSize);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size));
    m_text->setObjectName("lblConnection");
    auto* retry = new QPushButton("Ripro&va");
    retry->setObjectName("cmdRetryConnection");
    connect(retry, &QPushButton::clicked, this, &ConnectionBanner::Retry);
    auto* settings = new QPushButton("Apri il &file");
    settings->setObjectName("cmdOpenSettings");
    connect(settings, &QPushButton::clicked, this,
            [this] { QDesktopServices::openUrl(QUrl::fromLocalFile(m_settingsFile)); });
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(retry);
    buttons->addWidget(settings);
    buttons->addStretch();
    auto* all = new QHBoxLayout(this);
    all->addWidget(icon, 0, Qt::AlignTop);
    all->addWidget(m_text, 1);
    all->addLayout(buttons);
}

void ConnectionBanner::SetReason(const QString& what, const QString& reason, const QString& settingsFile) {
    m_settingsFile = settingsFile;
    m_text->SetText(what + ": " + reason + "\nLe impostazioni sono nel file " + QDir::toNativeSeparators(settingsFile));
}

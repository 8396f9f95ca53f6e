#include "ui/panel/NoticeBanner.h"

#include <QFocusEvent>

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <cmath>

#include "ui/panel/PanelModel.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

constexpr qreal iconSize = 18;
constexpr qreal buttonHeight = 26;
constexpr int maxLines = 5;  // more notes than that wait for a screen of their own

const char* symbolFor(updates::PanelNotice::Kind kind) {
    switch (kind) {
        case updates::PanelNotice::Kind::installOffer:
            return "pawprint.fill";
        case updates::PanelNotice::Kind::update:
            return "star.fill";
        case updates::PanelNotice::Kind::whatsNew:
            return "gift.fill";
    }
    return "pawprint.fill";
}

QString text(const std::string& s) { return QString::fromStdString(s); }

QFont codeFont(const QFont& base) {
    QFont font = base;
    font.setFamily(QStringLiteral("monospace"));
    font.setStyleHint(QFont::Monospace);
    return font;
}

qreal wrappedHeight(const QFont& font, qreal width, const QString& s) {
    return QFontMetricsF(font).boundingRect(QRectF(0, 0, width, 1e4), Qt::TextWordWrap, s).height();
}

}  // namespace

NoticeButton::NoticeButton(bool primary, const ThemeStore& theme, QWidget* parent)
    : QAbstractButton(parent), primary_(primary), theme_(theme) {
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
}

QSize NoticeButton::sizeHint() const {
    const QFontMetricsF fm(theme_.theme().type().label);
    return QSize(int(fm.horizontalAdvance(text()) + (primary_ ? 28 : 16)), int(buttonHeight));
}

void NoticeButton::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    QAbstractButton::focusInEvent(event);
}

void NoticeButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void NoticeButton::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF r = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (primary_) {
        p.setPen(Qt::NoPen);
        p.setBrush(isDown() ? pal.accent.darker(115) : pal.accent);
        p.drawRoundedRect(r, r.height() / 2, r.height() / 2);
    }
    if (hasFocus() && keyboardFocus_) {
        p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(r, r.height() / 2, r.height() / 2);
    }
    p.setFont(theme.type().label);
    p.setPen(primary_ ? pal.onAccent : pal.textSecondary);
    p.drawText(r, Qt::AlignCenter, text());
}

NoticeBanner::NoticeBanner(PanelModel& model, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme) {
    setObjectName(QStringLiteral("notice"));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    primary_ = new NoticeButton(true, theme_, this);
    secondary_ = new NoticeButton(false, theme_, this);
    auto send = [this](bool primary) {
        if (const auto& notice = model_.notice())
            emit model_.noticeActionRequested(notice->kind, primary);
    };
    connect(primary_, &QAbstractButton::clicked, this, [send] { send(true); });
    connect(secondary_, &QAbstractButton::clicked, this, [send] { send(false); });
    connect(&model_, &PanelModel::noticeChanged, this, &NoticeBanner::refresh);
    connect(&theme_, &ThemeStore::changed, this, [this] {
        updateGeometry();
        placeButtons();
        update();
    });
    refresh();
}

void NoticeBanner::refresh() {
    const auto& notice = model_.notice();
    setVisible(notice.has_value());
    if (notice) {
        primary_->setText(text(notice->primaryAction));
        primary_->setVisible(!notice->primaryAction.empty());
        primary_->setAccessibleName(text(notice->primaryAction));
        secondary_->setText(text(notice->secondaryAction));
        secondary_->setVisible(!notice->secondaryAction.empty());
        secondary_->setAccessibleName(text(notice->secondaryAction));
        setAccessibleName(text(notice->title));
        QString description = text(notice->detail);
        for (const auto& line : notice->lines) description += QStringLiteral("\n") + text(line);
        if (!notice->command.empty()) description += QStringLiteral("\n") + text(notice->command);
        setAccessibleDescription(description.trimmed());
    }
    updateGeometry();
    placeButtons();
    update();
}

NoticeBanner::Layout NoticeBanner::layoutFor(int width) const {
    Layout l;
    const auto& notice = model_.notice();
    if (!notice) return l;
    const TypeScale& type = theme_.theme().type();
    const qreal pad = Metrics::spacingLarge;
    l.card = QRectF(0, 0, width, 0);
    l.icon = QRectF(pad, pad, iconSize, iconSize);
    const qreal left = l.icon.right() + Metrics::spacing;
    const qreal textWidth = width - left - pad;
    qreal y = pad;
    l.title = QRectF(left, y, textWidth, wrappedHeight(type.label, textWidth, text(notice->title)));
    y = l.title.bottom();
    if (!notice->detail.empty()) {
        y += Metrics::spacingSmall;
        l.detail =
            QRectF(left, y, textWidth, wrappedHeight(type.body, textWidth, text(notice->detail)));
        y = l.detail.bottom();
    }
    const qreal bullet = 12;
    for (int i = 0; i < int(notice->lines.size()) && i < maxLines; ++i) {
        y += Metrics::spacingSmall;
        const QRectF r(left + bullet, y, textWidth - bullet,
                       wrappedHeight(type.caption, textWidth - bullet, text(notice->lines[i])));
        l.lines.push_back(r);
        y = r.bottom();
    }
    if (!notice->command.empty()) {
        y += Metrics::spacing;
        const qreal h = wrappedHeight(codeFont(type.caption), textWidth - 2 * Metrics::spacing,
                                      text(notice->command)) +
                        2 * Metrics::spacingSmall;
        l.command = QRectF(left, y, textWidth, h);
        y = l.command.bottom();
    }
    if (!notice->primaryAction.empty() || !notice->secondaryAction.empty()) {
        y += Metrics::spacing;
        l.buttons = QRectF(left, y, textWidth, buttonHeight);
        y = l.buttons.bottom();
    }
    l.height = int(std::ceil(y + pad));
    l.card.setHeight(l.height);
    return l;
}

int NoticeBanner::heightForWidth(int width) const { return layoutFor(width).height; }

QSize NoticeBanner::sizeHint() const {
    return QSize(Metrics::gridWidth, heightForWidth(Metrics::gridWidth));
}

void NoticeBanner::resizeEvent(QResizeEvent*) { placeButtons(); }

void NoticeBanner::placeButtons() {
    const Layout l = layoutFor(width());
    qreal right = l.buttons.right();
    for (NoticeButton* button : {primary_, secondary_}) {
        if (button->text().isEmpty()) continue;
        const QSize size = button->sizeHint();
        button->setGeometry(int(right - size.width()), int(l.buttons.top()), size.width(),
                            size.height());
        right -= size.width() + Metrics::spacingSmall;
    }
}

void NoticeBanner::paintEvent(QPaintEvent*) {
    const auto& notice = model_.notice();
    if (!notice) return;
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    const Layout l = layoutFor(width());
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF card = l.card.adjusted(0.5, 0.5, -0.5, -0.5);
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.surface);
    p.drawRoundedRect(card, Metrics::cardRadius, Metrics::cardRadius);

    Icons::paint(p, l.icon, symbolFor(notice->kind), pal.accent);
    p.setPen(pal.text);
    p.setFont(theme.type().label);
    p.drawText(l.title, Qt::TextWordWrap, text(notice->title));
    if (!notice->detail.empty()) {
        p.setPen(pal.textSecondary);
        p.setFont(theme.type().body);
        p.drawText(l.detail, Qt::TextWordWrap, text(notice->detail));
    }
    p.setFont(theme.type().caption);
    for (std::size_t i = 0; i < l.lines.size(); ++i) {
        p.setPen(pal.textTertiary);
        p.drawText(QRectF(l.lines[i].left() - 12, l.lines[i].top(), 12, l.lines[i].height()),
                   Qt::AlignLeft | Qt::AlignTop, QStringLiteral("•"));
        p.setPen(pal.textSecondary);
        p.drawText(l.lines[i], Qt::TextWordWrap, text(notice->lines[i]));
    }
    if (!notice->command.empty()) {
        p.setPen(Qt::NoPen);
        p.setBrush(pal.chip);
        p.drawRoundedRect(l.command, 6, 6);
        p.setPen(pal.text);
        p.setFont(codeFont(theme.type().caption));
        p.drawText(l.command.adjusted(Metrics::spacing, 0, -Metrics::spacing, 0),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, text(notice->command));
    }
}

}  // namespace trotlet::ui

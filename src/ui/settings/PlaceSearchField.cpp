#include "ui/settings/PlaceSearchField.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QVBoxLayout>

#include "panel/SettingsScreen.h"
#include "ui/controls/ThemedLabel.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"
#include "weather/qt/WeatherSearch.h"

namespace trotlet::ui {
namespace {

constexpr int iconSide = 14;

panel::PlaceSearchPhase phaseOf(weather::WeatherSearch::State state) {
    using S = weather::WeatherSearch::State;
    using P = panel::PlaceSearchPhase;
    switch (state) {
        case S::idle:
            return P::idle;
        case S::loading:
            return P::loading;
        case S::searching:
            return P::searching;
        case S::results:
            return P::results;
        case S::empty:
            return P::empty;
        case S::failed:
            return P::failed;
    }
    return P::idle;
}

// The rounded field the line edit sits in; the focus ring follows the edit's focus.
class FieldFrame : public QWidget {
public:
    FieldFrame(QLineEdit*& edit, const ThemeStore& theme, QWidget* parent)
        : QWidget(parent), edit_(edit), theme_(theme) {
        setFixedHeight(Metrics::controlHeight + 6);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const Palette& pal = theme_.theme().palette();
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const QRectF face = QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5);
        const bool focused = edit_ && edit_->hasFocus();
        p.setPen(QPen(focused ? pal.focusRing : pal.border, focused ? 1.5 : 1));
        p.setBrush(pal.window);
        p.drawRoundedRect(face, 8, 8);
        Icons::paint(
            p, QRectF(face.left() + 9, face.center().y() - iconSide / 2.0, iconSide, iconSide),
            "magnifyingglass", pal.textTertiary);
    }

private:
    QLineEdit*& edit_;
    const ThemeStore& theme_;
};

}  // namespace

PlaceSearchField::PlaceSearchField(weather::WeatherSearch* search, const ThemeStore& theme,
                                   QWidget* parent)
    : QWidget(parent), search_(search), theme_(theme) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Metrics::spacingSmall);

    frame_ = new FieldFrame(edit_, theme_, this);
    auto* row = new QHBoxLayout(frame_);
    row->setContentsMargins(9 + iconSide + 6, 3, 8, 3);
    edit_ = new QLineEdit(frame_);
    edit_->setFrame(false);
    edit_->setClearButtonEnabled(true);
    edit_->setAccessibleName(QStringLiteral("City"));
    edit_->setAccessibleDescription(
        QString::fromStdString(std::string(panel::weatherPrivacySentence)));
    edit_->installEventFilter(this);
    row->addWidget(edit_);
    column->addWidget(frame_);

    status_ = new ThemedLabel({}, ThemedLabel::Role::detail, theme_, this);
    status_->hide();
    column->addWidget(status_);

    list_ = new SuggestionList(theme_, this);
    list_->hide();
    column->addWidget(list_);

    auto applyTheme = [this] {
        const Theme& t = theme_.theme();
        QPalette palette = edit_->palette();
        palette.setColor(QPalette::Base, t.palette().window);
        palette.setColor(QPalette::Text, t.palette().text);
        palette.setColor(QPalette::PlaceholderText, t.palette().textTertiary);
        palette.setColor(QPalette::Highlight, t.palette().accent);
        palette.setColor(QPalette::HighlightedText, t.palette().onAccent);
        edit_->setPalette(palette);
        edit_->setFont(t.type().body);
        frame_->update();
    };
    connect(&theme_, &ThemeStore::changed, this, applyTheme);
    applyTheme();

    connect(edit_, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (search_) search_->setQuery(text.toStdString());
    });
    connect(list_, &SuggestionList::activated, this, &PlaceSearchField::choose);
    if (search_) {
        connect(search_, &weather::WeatherSearch::changed, this, &PlaceSearchField::searchChanged);
        // A search the screen left behind (the panel closed mid-way) is picked up as it was.
        edit_->setText(QString::fromStdString(search_->query()));
    }
    searchChanged();
}

void PlaceSearchField::setPlaceholder(const QString& text) { edit_->setPlaceholderText(text); }

QString PlaceSearchField::statusText() const {
    return status_->isVisible() ? status_->text() : QString();
}

int PlaceSearchField::highlighted() const { return list_->highlighted(); }

void PlaceSearchField::searchChanged() {
    if (!search_) {
        status_->setText(QStringLiteral("The weather search is not available"));
        status_->show();
        return;
    }
    const auto phase = phaseOf(search_->state());
    const std::string error = search_->error() ? search_->error()->message() : std::string();
    const QString line = QString::fromStdString(panel::placeSearchLine(
        phase, search_->resultsQuery().empty() ? search_->query() : search_->resultsQuery(),
        error));
    status_->setText(resolving_ ? QStringLiteral("Finding the place…") : line);
    status_->setRole(phase == panel::PlaceSearchPhase::failed ? ThemedLabel::Role::warning
                                                              : ThemedLabel::Role::detail);
    status_->setVisible(!status_->text().isEmpty());
    const auto& places = search_->results();
    // The list stays while the text moves on, dimmed, so the rows don't jump under the pointer.
    const bool keep = !places.empty() && !edit_->text().trimmed().isEmpty();
    list_->setPlaces(keep ? places : std::vector<weather::WeatherLocation>{},
                     search_->resultsAreCurrent());
    list_->setVisible(keep);
    updateGeometry();
}

void PlaceSearchField::choose(int index) {
    if (!search_ || resolving_) return;
    resolving_ = true;
    searchChanged();
    QPointer<PlaceSearchField> self(this);
    search_->resolve(index, [self](std::optional<weather::WeatherLocation> place) {
        if (!self) return;
        self->resolving_ = false;
        if (place) {
            self->edit_->clear();
            self->search_->clear();
            emit self->placeChosen(*place);
        }
        self->searchChanged();
    });
}

bool PlaceSearchField::eventFilter(QObject* watched, QEvent* event) {
    if (watched == edit_ && event->type() == QEvent::FocusIn) frame_->update();
    if (watched == edit_ && event->type() == QEvent::FocusOut) frame_->update();
    if (watched != edit_ || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
        case Qt::Key_Down:
            if (list_->count() > 0) list_->setHighlighted(list_->highlighted() + 1);
            return true;
        case Qt::Key_Up:
            if (list_->count() > 0) list_->setHighlighted(list_->highlighted() - 1);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            choose(list_->highlighted());
            return true;
        case Qt::Key_Escape:
            if (edit_->text().isEmpty()) return false;
            edit_->clear();
            if (search_) search_->clear();
            return true;
        default:
            return false;
    }
}

void PlaceSearchField::paintEvent(QPaintEvent*) {}

SuggestionList::SuggestionList(const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setMouseTracking(true);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(QStringLiteral("Suggestions"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme_, &ThemeStore::changed, this, qOverload<>(&QWidget::update));
}

void SuggestionList::setPlaces(const std::vector<weather::WeatherLocation>& places, bool current) {
    const bool fresh = places != places_;
    places_ = places;
    current_ = current;
    if (fresh) highlighted_ = 0;
    setFixedHeight(int(places_.size()) * Metrics::suggestionHeight);
    if (!places_.empty())
        setAccessibleDescription(
            QString::fromStdString(panel::placeWords(places_[std::size_t(highlighted_)])));
    update();
}

void SuggestionList::setHighlighted(int row) {
    if (places_.empty()) return;
    row = std::clamp(row, 0, int(places_.size()) - 1);
    if (row == highlighted_) return;
    highlighted_ = row;
    setAccessibleDescription(QString::fromStdString(panel::placeWords(places_[std::size_t(row)])));
    update();
}

QSize SuggestionList::sizeHint() const {
    return QSize(Metrics::gridWidth, int(places_.size()) * Metrics::suggestionHeight);
}

int SuggestionList::rowAt(qreal y) const {
    const int row = int(y / Metrics::suggestionHeight);
    return row >= 0 && row < int(places_.size()) ? row : -1;
}

void SuggestionList::paintEvent(QPaintEvent*) {
    const Theme& t = theme_.theme();
    const Palette& pal = t.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    // Rows answering older text stay readable but step back until the new answer lands.
    if (!current_) p.setOpacity(0.45);
    const QFontMetricsF nameMetrics(t.type().body);
    for (std::size_t i = 0; i < places_.size(); ++i) {
        const QRectF row(0, qreal(i) * Metrics::suggestionHeight, width(),
                         Metrics::suggestionHeight);
        const bool lit = int(i) == highlighted_;
        if (lit) {
            p.setPen(Qt::NoPen);
            p.setBrush(pal.accent);
            p.drawRoundedRect(row.adjusted(0, 2, 0, -2), 8, 8);
        }
        const panel::PlaceLine line = panel::placeLine(places_[i]);
        const QRectF text = row.adjusted(34, 0, -10, 0);
        Icons::paint(p, QRectF(row.left() + 10, row.center().y() - 8, 16, 16), "location.fill",
                     lit ? pal.onAccent : pal.textTertiary);
        p.setFont(t.type().body);
        p.setPen(lit ? pal.onAccent : pal.text);
        const QString name = QString::fromStdString(line.name);
        p.drawText(QRectF(text.left(), row.top(), text.width(), row.height() / 2),
                   Qt::AlignLeft | Qt::AlignBottom,
                   nameMetrics.elidedText(name, Qt::ElideRight, text.width()));
        p.setFont(t.type().caption);
        QColor where = lit ? pal.onAccent : pal.textSecondary;
        if (lit) where.setAlphaF(0.85);
        p.setPen(where);
        p.drawText(
            QRectF(text.left(), row.center().y() + 2, text.width(), row.height() / 2 - 2),
            Qt::AlignLeft | Qt::AlignTop,
            QFontMetricsF(t.type().caption)
                .elidedText(QString::fromStdString(line.where), Qt::ElideRight, text.width()));
    }
}

void SuggestionList::mouseMoveEvent(QMouseEvent* event) {
    const int row = rowAt(event->position().y());
    if (row >= 0) setHighlighted(row);
}

void SuggestionList::mouseReleaseEvent(QMouseEvent* event) {
    const int row = rowAt(event->position().y());
    if (event->button() == Qt::LeftButton && row >= 0) {
        setHighlighted(row);
        emit activated(row);
    }
}

}  // namespace trotlet::ui

#include "ui/settings/SettingsRowView.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

#include "layout/LayoutStore.h"
#include "settings/AppSettings.h"
#include "settings/KeyedAccess.h"
#include "settings/SettingsKeys.h"
#include "ui/controls/ChoiceControl.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/ShortcutRecorder.h"
#include "ui/controls/StepSlider.h"
#include "ui/controls/ThemedLabel.h"
#include "ui/controls/ToggleSwitch.h"
#include "ui/panel/PanelModel.h"
#include "ui/settings/MenuBarPreview.h"
#include "ui/settings/PlaceSearchField.h"
#include "ui/settings/SettingsController.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Gradients.h"
#include "ui/theme/ThemeStore.h"
#include "weather/WeatherLocation.h"

namespace trotlet::ui {
namespace {

QString qs(const std::string& s) { return QString::fromStdString(s); }

// The app's mark in About: the paw on an accent tile.
class AppMark : public QWidget {
public:
    AppMark(const ThemeStore& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
        setFixedSize(44, 44);
        connect(&theme_, &ThemeStore::changed, this, qOverload<>(&QWidget::update));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const Palette& pal = theme_.theme().palette();
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(verticalGradient(
            QRectF(rect()), {{0, pal.named("orange").lighter(115)}, {1, pal.named("orange")}}));
        p.drawRoundedRect(QRectF(rect()), 11, 11);
        Icons::paint(p, QRectF(rect()).adjusted(9, 9, -9, -9), "pawprint.fill", pal.onAccent);
    }

private:
    const ThemeStore& theme_;
};

// A symbol in the accent colour, before a row's title.
class Symbol : public QWidget {
public:
    Symbol(std::string name, const ThemeStore& theme, QWidget* parent)
        : QWidget(parent), name_(std::move(name)), theme_(theme) {
        setFixedSize(20, 20);
        connect(&theme_, &ThemeStore::changed, this, qOverload<>(&QWidget::update));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        Icons::paint(p, QRectF(rect()), name_, theme_.theme().palette().accent);
    }

private:
    std::string name_;
    const ThemeStore& theme_;
};

// A segmented control on the right of its row is as wide as its labels need, no wider.
int segmentsWidth(const QStringList& labels, const QFont& font) {
    const QFontMetricsF fm(font);
    qreal widest = 0;
    for (const QString& label : labels) widest = std::max(widest, fm.horizontalAdvance(label));
    return int(std::ceil(std::max<qreal>(widest + 22, 46) * labels.size())) + 4;
}

QStringList labelsOf(const panel::SettingsRow& row) {
    QStringList labels;
    for (const auto& option : row.options) labels << qs(option.label);
    return labels;
}

QStringList spokenOf(const panel::SettingsRow& row) {
    QStringList spoken;
    for (const auto& option : row.options) spoken << qs(option.spoken);
    return spoken;
}

std::optional<int> selectedOf(const panel::SettingsRow& row) {
    if (!row.selected) return std::nullopt;
    return int(*row.selected);
}

}  // namespace

SettingsRowView::SettingsRowView(const panel::SettingsRow& row, SettingsContext& context,
                                 QWidget* parent)
    : QWidget(parent), row_(row), context_(context) {
    setObjectName(qs("row." + row.id));
    build();
    applyTexts();
}

void SettingsRowView::write(const settings::SettingValue& value) {
    settings::keyed::set(context_.model.settings(), row_.key, value);
}

void SettingsRowView::build() {
    using K = panel::RowKind;
    const ThemeStore& theme = context_.theme;
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Metrics::rowPadding, 9, Metrics::rowPadding, 9);
    column->setSpacing(6);
    setMinimumHeight(Metrics::rowHeight);

    if (row_.kind == K::preview) {
        column->setContentsMargins(Metrics::rowPadding, 4, Metrics::rowPadding, 4);
        column->addWidget(new MenuBarPreview(context_.model, theme, this));
        return;
    }

    auto* top = new QHBoxLayout;
    top->setSpacing(Metrics::spacingLarge);
    column->addLayout(top);
    if (row_.kind == K::about) {
        top->addWidget(new AppMark(theme, this), 0, Qt::AlignTop);
    } else if (row_.kind == K::place) {
        top->addWidget(new Symbol("location.fill", theme, this), 0, Qt::AlignVCenter);
    }
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    title_ = new ThemedLabel(
        {}, row_.kind == K::about ? ThemedLabel::Role::pageTitle : ThemedLabel::Role::title, theme,
        this);
    texts->addWidget(title_);
    detail_ = new ThemedLabel({}, ThemedLabel::Role::detail, theme, this);
    texts->addWidget(detail_);
    if (row_.kind == K::about || row_.kind == K::path) {
        extra_ = new ThemedLabel({}, ThemedLabel::Role::footnote, theme, this);
        extra_->setTextInteractionFlags(Qt::TextSelectableByMouse);
        texts->addWidget(extra_);
    }
    top->addLayout(texts, 1);

    switch (row_.kind) {
        case K::toggle:
        case K::cardToggle: {
            toggle_ = new ToggleSwitch(theme, this);
            top->addWidget(toggle_, 0, Qt::AlignVCenter);
            connect(toggle_, &ToggleSwitch::toggled, this, [this](bool on) {
                if (row_.kind == K::toggle) return write(settings::SettingValue(on));
                auto binding = context_.model.layout().hiddenBinding();
                auto hidden = binding.get();
                hidden.erase(std::remove(hidden.begin(), hidden.end(), row_.cardId), hidden.end());
                if (!on) hidden.push_back(row_.cardId);
                binding.set(hidden);
            });
            focusTarget_ = toggle_;
            break;
        }
        case K::segmented: {
            choice_ = new ChoiceControl(ChoiceControl::Style::segments, theme, this);
            choice_->setOptions(labelsOf(row_), spokenOf(row_));
            choice_->setFixedWidth(segmentsWidth(labelsOf(row_), theme.theme().type().label));
            choice_->setFixedHeight(Metrics::controlHeight);
            top->addWidget(choice_, 0, Qt::AlignVCenter);
            break;
        }
        case K::chips: {
            choice_ = new ChoiceControl(ChoiceControl::Style::chips, theme, this);
            choice_->setOptions(labelsOf(row_), spokenOf(row_));
            column->addWidget(choice_);
            break;
        }
        case K::slider: {
            value_ = new ThemedLabel({}, ThemedLabel::Role::value, theme, this);
            top->addWidget(value_, 0, Qt::AlignTop);
            slider_ = new StepSlider(theme, this);
            slider_->setStops(int(row_.options.size()), spokenOf(row_));
            column->addWidget(slider_);
            auto* ends = new QHBoxLayout;
            extra_ = new ThemedLabel({}, ThemedLabel::Role::footnote, theme, this);
            endLabel_ = new ThemedLabel({}, ThemedLabel::Role::footnote, theme, this);
            endLabel_->setAlignment(Qt::AlignRight);
            ends->addWidget(extra_);
            ends->addStretch();
            ends->addWidget(endLabel_);
            column->addLayout(ends);
            column->setSpacing(2);
            connect(slider_, &StepSlider::chosen, this, [this](int stop) {
                if (stop >= 0 && stop < int(row_.options.size()))
                    write(row_.options[std::size_t(stop)].value);
            });
            focusTarget_ = slider_;
            break;
        }
        case K::shortcut: {
            recorder_ = new ShortcutRecorder(theme, this);
            top->addWidget(recorder_, 0, Qt::AlignVCenter);
            connect(recorder_, &ShortcutRecorder::recorded, this, [this](int key, int modifiers) {
                auto& settings = context_.model.settings();
                settings::keyed::set(settings, settings::keys::globalShortcutKeyCode,
                                     settings::SettingValue(key));
                settings::keyed::set(settings, settings::keys::globalShortcutModifiers,
                                     settings::SettingValue(modifiers));
            });
            connect(recorder_, &ShortcutRecorder::recordingChanged, this, [this](bool on) {
                recording_ = on;
                applyTexts();
                emit context_.controller.shortcutRecording(on);
            });
            connect(recorder_, &ShortcutRecorder::problem, this, [this](const QString& message) {
                recorderProblem_ = message;
                applyTexts();
            });
            focusTarget_ = recorder_;
            break;
        }
        case K::button:
        case K::path:
        case K::licence:
        case K::place: {
            const auto style = row_.destructive        ? PushButton::Style::destructive
                               : row_.kind == K::place ? PushButton::Style::quiet
                                                       : PushButton::Style::plain;
            button_ = new PushButton(qs(row_.actionLabel), style, theme, this);
            if (row_.kind == K::path) button_->setIcon("folder.fill");
            if (row_.action == panel::RowAction::resetLayout)
                button_->setIcon("arrow.counterclockwise");
            top->addWidget(button_, 0, Qt::AlignVCenter);
            connect(button_, &PushButton::clicked, this, [this] {
                switch (row_.action) {
                    case panel::RowAction::resetLayout:
                        context_.model.layout().reset();
                        return;
                    case panel::RowAction::clearPlace:
                        write(settings::SettingValue(nullptr));
                        return;
                    case panel::RowAction::none:
                        if (row_.kind == K::licence) {
                            licenceOpen_ = !licenceOpen_;
                            applyTexts();
                        }
                        return;
                    default:
                        emit actionRequested(row_.action);
                }
            });
            focusTarget_ = button_;
            if (row_.kind == K::licence) {
                extra_ = new ThemedLabel(qs(std::string(panel::licenceText)),
                                         ThemedLabel::Role::footnote, theme, this);
                extra_->setTextInteractionFlags(Qt::TextSelectableByMouse);
                extra_->hide();
                column->addWidget(extra_);
            }
            break;
        }
        case K::placeSearch: {
            title_->hide();
            detail_->hide();
            placeField_ = new PlaceSearchField(context_.controller.placeSearch(), theme, this);
            column->addWidget(placeField_);
            column->setContentsMargins(Metrics::rowPadding - 2, 8, Metrics::rowPadding - 2, 8);
            connect(placeField_, &PlaceSearchField::placeChosen, this,
                    [this](const weather::WeatherLocation& place) {
                        write(settings::SettingValue(weather::encodeLocationSetting(place)));
                    });
            focusTarget_ = &placeField_->edit();
            break;
        }
        case K::about:
        case K::preview:
            break;
    }
    if (choice_) {
        connect(choice_, &ChoiceControl::chosen, this, [this](int index) {
            if (index >= 0 && index < int(row_.options.size()))
                write(row_.options[std::size_t(index)].value);
        });
        focusTarget_ = choice_;
    }
}

void SettingsRowView::show(const panel::SettingsRow& row) {
    const bool optionsChanged = labelsOf(row) != labelsOf(row_);
    row_ = row;
    if (optionsChanged && choice_) choice_->setOptions(labelsOf(row_), spokenOf(row_));
    if (optionsChanged && slider_) slider_->setStops(int(row_.options.size()), spokenOf(row_));
    applyTexts();
}

void SettingsRowView::applyTexts() {
    using K = panel::RowKind;
    if (title_) title_->setText(qs(row_.title));
    if (detail_ && row_.kind != K::placeSearch) {
        const bool problem = !recorderProblem_.isEmpty();
        detail_->setText(problem ? recorderProblem_
                         : recording_
                             ? QStringLiteral("Press the new keys, or Escape to keep these")
                             : qs(row_.detail));
        detail_->setRole(problem || row_.warning ? ThemedLabel::Role::warning
                                                 : ThemedLabel::Role::detail);
        detail_->setVisible(!detail_->text().isEmpty());
    }
    if (value_) value_->setText(qs(row_.valueText));
    if (row_.kind == K::slider && extra_) {
        extra_->setText(qs(row_.startLabel));
        endLabel_->setText(qs(row_.endLabel));
    }
    if (row_.kind == K::about && extra_) extra_->setText(qs(row_.valueText));
    if (row_.kind == K::about && detail_) detail_->setRole(ThemedLabel::Role::detail);
    if (row_.kind == K::path && extra_) extra_->setText(qs(row_.path));
    if (row_.kind == K::licence && extra_) {
        extra_->setVisible(licenceOpen_);
        button_->setText(licenceOpen_ ? QStringLiteral("Hide") : qs(row_.actionLabel));
    }
    if (button_ && row_.kind != K::licence) {
        button_->setText(qs(row_.actionLabel));
        button_->setVisible(!row_.actionLabel.empty());
    }
    if (toggle_) toggle_->setOn(row_.on);
    if (choice_) choice_->setSelected(selectedOf(row_));
    if (slider_) slider_->setSelected(selectedOf(row_));
    if (recorder_) recorder_->setShortcutText(qs(row_.valueText));
    if (focusTarget_ && row_.kind != K::placeSearch) {
        focusTarget_->setAccessibleName(qs(row_.title));
        focusTarget_->setAccessibleDescription(detail_ ? detail_->text() : QString());
    }
    if (placeField_) placeField_->setPlaceholder(qs(row_.title));
}

void SettingsRowView::mouseReleaseEvent(QMouseEvent* event) {
    // The whole row of a switch is its hit target, as in the desktop's own settings.
    if (toggle_ && event->button() == Qt::LeftButton &&
        rect().contains(event->position().toPoint())) {
        toggle_->setFocus(Qt::MouseFocusReason);
        toggle_->activate();
        return;
    }
    QWidget::mouseReleaseEvent(event);
}

}  // namespace trotlet::ui

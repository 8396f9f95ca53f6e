#pragma once

#include <QRectF>
#include <QString>

#include <array>
#include <optional>
#include <vector>

#include "processes/ProcessSort.h"
#include "processes/ProcessTexts.h"

class QPainter;

namespace trotlet::ui {

class Theme;

// Where each column sits inside a row's content box (the row less its padding): the fixed-width
// readings on the right, the name taking what is left.
struct ColumnBox {
    processes::ProcessColumn column;
    QRectF box;
    Qt::Alignment align;
};
std::array<ColumnBox, 5> processColumns(const QRectF& content);

// What one row shows, decided before painting.
struct RowLook {
    const metrics::ProcessRow* row = nullptr;
    std::optional<processes::ProcessTexts::Status> status;
    bool ended = false;
    bool selected = false;
    bool focused = false;  // the list has the keyboard: the selection in the accent
    bool hovered = false;
};

namespace ProcessRowPainter {

// The row's line: background, name (with its app in a lighter voice), status and readings.
void paintRow(QPainter& p, const Theme& theme, const QRectF& line, const RowLook& look);
// The opened part below the line: labelled detail lines and the action line.
void paintDetails(QPainter& p, const Theme& theme, const QRectF& area,
                  const std::vector<processes::ProcessTexts::DetailLine>& lines,
                  const processes::ProcessTexts::Action& action);
// The button of the action line in an opened row's details area.
QRectF actionButtonRect(const Theme& theme, const QRectF& area,
                        const processes::ProcessTexts::Action& action);
// The height the details need below a row: their lines and the action line.
int detailHeight(std::size_t lines);

}  // namespace ProcessRowPainter

}  // namespace trotlet::ui

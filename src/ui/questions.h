#pragma once

#include <QtWidgets>
#include <optional>
#include <string>

#include "platform/window_system.h"

namespace merlane {

// The modal dialogs, each asked over `parent`, which may be null.

/// A message or question; returns the button pressed.
Answer AskInBox(const Message& message, QWidget* parent);
/// A request for a line of text; none when cancelled.
std::optional<std::string> AskForLine(const InputRequest& request, QWidget* parent, bool aside);
/// A request for a file, beginning in `folder` where the request names none; none when cancelled.
std::optional<std::string> AskForFile(const FileRequest& request, const QString& folder, QWidget* parent);
/// What all file dialogs have in common: they tell the size, kind and date of files whole, and take a path that is
/// typed.
void PrepareFileDialog(QFileDialog& dialog);
/// Tells of a command that failed.
void TellFailure(const std::string& text, QWidget* parent);

/// The filters of a file request as a file dialog takes them: "Description (*.dat *.xls)".
QStringList NameFilters(const std::string& filter);

}  // namespace merlane

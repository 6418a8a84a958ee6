#include "panels/prep/ExpressionColours.h"

#include <QGuiApplication>
#include <QPalette>
#include <QRegularExpression>
#include <QTextCharFormat>

#include "factors/EvaluatorOperations.h"
#include "toolkit/Theme.h"

namespace tarvex {

ExpressionColours::ExpressionColours(QTextDocument* document, const std::vector<std::string>& names)
    : QSyntaxHighlighter(document) {
  for (const std::string& name : names) names_.insert(QString::fromStdString(name));
  for (const std::string_view name : functionNames())
    functions_.insert(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
}

void ExpressionColours::highlightBlock(const QString& text) {
  QTextCharFormat known;
  known.setForeground(accentColour(isDark(QGuiApplication::palette())));
  QTextCharFormat function;
  function.setFontItalic(true);
  QTextCharFormat unknown;
  unknown.setUnderlineStyle(QTextCharFormat::WaveUnderline);
  // A number takes its exponent's letter along.
  static const QRegularExpression words("[0-9.]+([eE][+-]?[0-9]+)?|([A-Za-z_][A-Za-z0-9_]*)");
  for (auto found = words.globalMatch(text); found.hasNext();) {
    const QRegularExpressionMatch word = found.next();
    const QString name = word.captured(2);
    if (name.isEmpty()) continue;
    const QTextCharFormat& format = names_.contains(name) ? known : functions_.contains(name) ? function : unknown;
    setFormat(static_cast<int>(word.capturedStart()), static_cast<int>(name.size()), format);
  }
}

}  // namespace tarvex

#pragma once

#include <QSet>
#include <QSyntaxHighlighter>

namespace tarvex {

// Shows in an expression what is a function, what a known name, and underlines the names that nobody knows.
class ExpressionColours : public QSyntaxHighlighter {
 public:
  ExpressionColours(QTextDocument* document, const std::vector<std::string>& names);

 protected:
  void highlightBlock(const QString& text) override;

 private:
  QSet<QString> names_;
  QSet<QString> functions_;
};

}  // namespace tarvex

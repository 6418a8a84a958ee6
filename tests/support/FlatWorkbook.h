#pragma once

#include <string>
#include <vector>

namespace tarvex::test {

// A sheet of a workbook: its name and its rows. A cell that begins with '=' is a formula, one of digits a number, any
// other a text.
struct FlatSheet {
  std::string name;
  std::vector<std::vector<std::string>> rows = {};
  bool isProtected = false;
};

// The text of a workbook that is one XML file.
inline std::string flatWorkbook(const std::vector<FlatSheet>& sheets) {
  std::string text = R"(<?xml version="1.0" encoding="UTF-8"?><office:document office:version="1.3")"
                     R"( office:mimetype="application/vnd.oasis.opendocument.spreadsheet")"
                     R"( xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0")"
                     R"( xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0")"
                     R"( xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0")"
                     R"( xmlns:of="urn:oasis:names:tc:opendocument:xmlns:of:1.2"><office:body><office:spreadsheet>)";
  for (const FlatSheet& sheet : sheets) {
    text += "<table:table table:name=\"" + sheet.name + (sheet.isProtected ? "\" table:protected=\"true\">" : "\">");
    for (const auto& row : sheet.rows) {
      text += "<table:table-row>";
      for (const std::string& cell : row) {
        if (cell.starts_with('='))
          text += "<table:table-cell table:formula=\"of:" + cell + "\"/>";
        else if (cell.find_first_not_of("0123456789.") == std::string::npos)
          text += R"(<table:table-cell office:value-type="float" office:value=")" + cell + "\"/>";
        else
          text += R"(<table:table-cell office:value-type="string"><text:p>)" + cell + "</text:p></table:table-cell>";
      }
      text += "</table:table-row>";
    }
    text +=
        sheet.rows.empty() ? "<table:table-row><table:table-cell/></table:table-row></table:table>" : "</table:table>";
  }
  return text + "</office:spreadsheet></office:body></office:document>";
}

}  // namespace tarvex::test

// The examples of docs/named-list-format.md, byte for byte.

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/Files.h"
#include "support/Text.h"
#include "tables/SNamedStringList.h"

namespace {

// Returns what a text in double quotes stands for, any other text as it is.
std::string Unquoted(std::string_view text) {
  if (!text.starts_with('"')) return std::string(text);
  std::string bytes;
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    if (text[i] != '\\') {
      bytes += text[i];
      continue;
    }
    switch (text[++i]) {
      case 'n':
        bytes += '\n';
        break;
      case 'r':
        bytes += '\r';
        break;
      case 't':
        bytes += '\t';
        break;
      default:
        ADD_FAILURE() << "an unknown escape in " << text;
    }
  }
  return bytes;
}

// Puts into `list` what a cell says: NAME = VALUE, VALUE; NAME = ..., each between backquotes.
void FillFrom(std::string_view cell, SNamedStringList& list) {
  SStringList* values = nullptr;
  for (std::size_t at = 0; (at = cell.find('`', at)) != cell.npos;) {
    const std::size_t end = cell.find('`', at + 1);
    const SString text = Text(Unquoted(cell.substr(at + 1, end - at - 1)));
    at = end + 1;
    if (cell.substr(at).starts_with(" =")) {
      values = &list[text];
      values->Reset();
    } else if (values != nullptr) {
      values->Push(text);
    }
  }
}

std::string TextIn(std::string_view cell) {
  const std::size_t from = cell.find('`') + 1;
  return Unquoted(cell.substr(from, cell.rfind('`') - from));
}

using Row = std::vector<std::string>;

// Returns the rows of the table below a heading, as cells, without the head of the table.
std::vector<Row> TableBelow(const std::string& heading) {
  std::ifstream page(SOURCE_DIR "/docs/named-list-format.md");
  std::vector<Row> rows;
  std::string line;
  while (std::getline(page, line) && line != heading) {
  }
  while (std::getline(page, line) && !line.starts_with("## ")) {
    if (!line.starts_with("| 0") && !line.starts_with("| 1")) continue;
    Row row;
    for (std::size_t at = 1; at < line.size();) {
      const std::size_t bar = line.find('|', at);
      row.push_back(line.substr(at, bar - at));
      at = bar + 1;
    }
    rows.push_back(row);
  }
  return rows;
}

unsigned CrlfIn(const std::string& cell) { return cell == " 1 " ? 1 : 0; }

TEST(NamedListPage, WhatIsWrittenIsAsThePageSays) {
  const std::vector<Row> rows = TableBelow("## Written");
  EXPECT_EQ(rows.size(), 8u);
  for (const Row& row : rows) {
    ASSERT_EQ(row.size(), 3u);
    SCOPED_TRACE(row[1]);
    SNamedStringList list(1, CrlfIn(row[0]));
    FillFrom(row[1], list);
    SString text("");
    text << list;
    EXPECT_EQ(text.View(), TextIn(row[2]));
  }
}

TEST(NamedListPage, WhatIsReadIsAsThePageSays) {
  const std::vector<Row> rows = TableBelow("## Read");
  EXPECT_EQ(rows.size(), 13u);
  for (const Row& row : rows) {
    ASSERT_EQ(row.size(), 3u);
    SCOPED_TRACE(row[1]);
    SNamedStringList list(1, CrlfIn(row[0])), expected(1, 0);
    Text(TextIn(row[1])) >> list;
    FillFrom(row[2], expected);
    EXPECT_EQ(list.Keys(), expected.Keys());
    for (const SString& name : expected.Keys()) EXPECT_EQ(list.Get(name), expected.Get(name));
  }
}

}  // namespace

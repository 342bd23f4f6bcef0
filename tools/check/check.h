#pragma once

#include <vector>

#include "tools/catalogue_source.h"
#include "tools/check/checked_catalogue.h"
#include "tools/check/finding.h"

// Everything that is wrong or doubtful about a catalogue, the modules file first, each file in the
// order of its lines. Whenever the console ends up without a block or a key that a file shows,
// there is an error among the findings. Prints nothing.
std::vector<Finding> CheckCatalogue(const CataloguePaths& paths);

// The parts of the check. Each adds its findings about one file, or about both.

// rows.cpp: what is not a row of a block, is over a limit, given twice, or cut. Of the file's rows
// before its first block, and of a block.
void CheckHead(CheckedRows& file);
void CheckRows(const CatalogueBlock& block, CheckedRows& file);

// values.cpp: the values of a block by themselves, the bytes of a row that the console takes, and
// those of a text that it prints.
void CheckValues(const ModuleBlock& block, FindingList& findings);
void CheckValues(const CmdBlock& block, FindingList& findings);
void CheckBytes(const FileRow& row, FindingList& findings);
void CheckShown(std::size_t line, const std::string& what, const std::string& text,
                FindingList& findings);

// numbers.cpp: the instructions, by themselves and compared with each other.
void CheckNumber(const ModuleBlock& block, FindingList& findings);
void CheckNumber(const CmdBlock& block, FindingList& findings);
void CheckNumbers(CheckedCatalogue& checked);

// formats.cpp: the formats of a command and the labels.
void CheckFormats(const CmdBlock& block, FindingList& findings);

// fates.cpp: what became of the blocks when the console stored them, and what they are to each
// other.
void CheckFates(CheckedCatalogue& checked);

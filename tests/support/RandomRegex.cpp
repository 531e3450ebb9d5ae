#include "support/RandomRegex.h"

#include <algorithm>
#include <sstream>

inline namespace mailhearth {

namespace {

constexpr int kMaxGroups = 9;
constexpr int kMaxDepth = 5;

}  // namespace

std::string PatternMaker::Make(int symbols) {
  Part part;
  do {
    left_ = symbols;
    groups_ = 0;
    part = _MakeChoice(0);
  } while (part.pattern.empty());
  return part.pattern;
}

void PatternMaker::_Join(Part& whole, const Part& part) {
  whole.pattern += part.pattern;
  whole.anchored |= part.anchored;
  whole.repetitions = std::max(whole.repetitions, part.repetitions);
}

PatternMaker::Part PatternMaker::_MakeChoice(int depth) {
  Part choice = _MakeRow(depth);
  while (left_ > 0 && chance_.Is(depth == 0 ? 12 : 35)) {
    choice.pattern += '|';
    --left_;
    const Part row = _MakeRow(depth);
    _Join(choice, row);
    choice.nullable |= row.nullable;
  }
  return choice;
}

PatternMaker::Part PatternMaker::_MakeRow(int depth) {
  Part row;
  row.nullable = true;
  if (dialect_.emptyBranches && chance_.Is(5)) return row;
  do {
    const Part piece = _MakePiece(depth);
    _Join(row, piece);
    row.nullable &= piece.nullable;
  } while (left_ > 0 && chance_.Is(depth == 0 ? 85 : 60));
  return row;
}

PatternMaker::Part PatternMaker::_MakePiece(int depth) {
  Part piece = _MakeAtom(depth);
  for (int percent = 40; chance_.Is(percent) && _MayRepeat(piece); percent = 20) {
    _Repeat(piece);
    if (!dialect_.stacked) break;
  }
  return piece;
}

PatternMaker::Part PatternMaker::_MakeAtom(int depth) {
  --left_;
  if (groups_ < kMaxGroups && depth < kMaxDepth && left_ > 0 && chance_.Is(35)) {
    ++groups_;
    Part group = _MakeChoice(depth + 1);
    group.pattern.insert(0, 1, '(');
    group.pattern += ')';
    return group;
  }
  if (chance_.Is(5)) {
    static constexpr const char* kAnchors[] = {"^", "$", "[[:<:]]", "[[:>:]]"};
    return {kAnchors[chance_.Below(dialect_.words ? 4 : 2)], true, true};
  }
  static constexpr const char* kAtoms[] = {"a", "a",    "a",      "a",           "b",
                                           "b", "b",    "B",      "c",           ".",
                                           ".", "[ab]", "[^a\n]", "[[:alpha:]]", "[^[:space:]b]",
                                           " ", "_",    "\\."};
  Part atom;
  atom.pattern = chance_.OneOf(kAtoms);
  if (dialect_.marksBytes) atom.pattern += kBehindByte;
  return atom;
}

bool PatternMaker::_MayRepeat(const Part& part) const {
  return (dialect_.emptyTurns || !part.nullable) && (dialect_.repeatedAnchors || !part.anchored) &&
         part.repetitions < dialect_.maxRepetitions;
}

void PatternMaker::_Repeat(Part& part) {
  --left_;
  ++part.repetitions;
  int min = chance_.Below(dialect_.maxBound + 1);
  switch (chance_.Below(6)) {
    case 0:
      part.pattern += '*';
      min = 0;
      break;
    case 1:
      part.pattern += '+';
      min = 1;
      break;
    case 2:
      part.pattern += '?';
      min = 0;
      break;
    default:
      part.pattern += _MakeBound(min);
  }
  part.nullable |= min == 0;
}

std::string PatternMaker::_MakeBound(int min) {
  std::ostringstream bound;
  bound << '{' << min;
  const int form = chance_.Below(3);
  if (form > 0) bound << ',';
  if (form > 1) bound << min + chance_.Below(dialect_.maxBound + 1 - min);
  bound << '}';
  return bound.str();
}

std::string RandomText(Chance& chance, std::string_view bytes, int most) {
  std::string text;
  for (int left = chance.Below(most + 1); left > 0; --left) text += chance.OneOf(bytes);
  return text;
}

}  // namespace mailhearth

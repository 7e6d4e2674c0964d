#include "text/places.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(Places, AreFilledByName) {
  const places values = {{"id", "app"}, {"path", "/opt"}, {"old owner", "root"}, {"loop", "{id}"}};
  const struct {
    const char* text;
    const char* filled;
  } cases[] = {
      {"", ""},
      {"no places", "no places"},
      {"{id}", "app"},
      {"{id}-tar: {id}.tar", "app-tar: app.tar"},
      {"{path}/{id}", "/opt/app"},
      {"{old owner}", "root"},
      {"find . -exec {} \\;", "find . -exec {} \\;"},
      {"{}{id}{}", "{}app{}"},
      {"{unknown}", "{unknown}"},
      {"{ID}", "{ID}"},
      {"{{id}}", "{app}"},
      {"{id", "{id"},
      {"id}", "id}"},
      {"{", "{"},
      {"{loop} {id}", "{id} app"},
      {"100%s {id}", "100%s app"},
  };
  for (const auto& [text, filled] : cases) EXPECT_EQ(fill_places(text, values), filled) << text;
}

TEST(Places, WithoutValuesEverythingStands) {
  EXPECT_EQ(fill_places("{id} {}", {}), "{id} {}");
}

TEST(Places, MayStayEmpty) {
  EXPECT_EQ(fill_places("{id}", {{"id", ""}}), "");
  EXPECT_EQ(fill_places("a{id}b\n{id}\n{id}c", {{"id", ""}}), "ab\n\nc");
}

TEST(Places, TheFirstOfTwoValuesCounts) {
  EXPECT_EQ(fill_places("{id}", {{"id", "first"}, {"id", "second"}}), "first");
}

TEST(Conditions, SayWhichLinesStand) {
  const places values = {{"id", "app"}, {"new", "a place"}, {"empty", ""}};
  const conditions held = {{"new", true}, {"closed", false}};
  const struct {
    const char* text;
    const char* filled;
  } cases[] = {
      {"{new}", ""},
      {"{new}\n", "\n"},
      {"{closed}\n", ""},
      {"{new}{id}\n", "app\n"},
      {"{closed}{id}\n", ""},
      {"a\n{new}b\nc\n", "a\nb\nc\n"},
      {"a\n{closed}b\nc\n", "a\nc\n"},
      {"a\n\n{closed}\n\nb", "a\n\n\nb"},
      {"{new}\tb \\\n{closed}\tc \\\n", "\tb \\\n"},
      // Negated.
      {"{!new}a\n{!closed}b\n", "b\n"},
      {"{!!closed}a", "{!!closed}a"},
      {"{! closed}a", "{! closed}a"},
      // Several on a line.
      {"{new}{!closed}a", "a"},
      {"{new}{closed}a", ""},
      {"{closed}{new}a", ""},
      {"{new}{!new}a", ""},
      {"{new}{new}a", "a"},
      // At the end of the text, without a newline.
      {"a\n{new}b", "a\nb"},
      {"a\n{closed}b", "a\n"},
      {"a\n{closed}", "a\n"},
      // Only at the head of a line, and before any place.
      {" {new}a", " a placea"},
      {"a {closed}b", "a {closed}b"},
      {"{id}{closed}a", "app{closed}a"},
      {"{empty}{closed}a", "{closed}a"},
      {"{new}{new2}{closed}a", "{new2}{closed}a"},
      // Unknown ones, and braces without meaning.
      {"{unknown}a\n{!unknown}b\n", "{unknown}a\n{!unknown}b\n"},
      {"{unknown}{closed}a", "{unknown}{closed}a"},
      {"{!id}", "{!id}"},
      {"{}{closed}a", "{}{closed}a"},
      {"{!}{closed}a", "{!}{closed}a"},
      {"{{closed}a", "{{closed}a"},
      {"{closed", "{closed"},
      {"{closed\n}a", "{closed\n}a"},
      {"closed}a", "closed}a"},
      {"{Closed}a", "{Closed}a"},
      {"{new}{", "{"},
      {"{new}{}", "{}"},
  };
  for (const auto& [text, filled] : cases)
    EXPECT_EQ(fill_places(text, values, held), filled) << text;
}

TEST(Conditions, AreNotReadInWhatWasInserted) {
  const places values = {{"id", "{closed}"}, {"lines", "a\n{closed}b\n{!closed}c\n"}};
  const conditions held = {{"closed", false}};
  EXPECT_EQ(fill_places("{id}x\n{lines}{closed}y", values, held),
            "{closed}x\na\n{closed}b\n{!closed}c\n{closed}y");
  EXPECT_EQ(fill_places("{!closed}{id}x", values, held), "{closed}x");
}

}  // namespace
}  // namespace morvane

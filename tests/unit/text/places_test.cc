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

TEST(Places, TheFirstOfTwoValuesCounts) {
  EXPECT_EQ(fill_places("{id}", {{"id", "first"}, {"id", "second"}}), "first");
}

}  // namespace
}  // namespace morvane

#include "output/makefile_text.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "support/records.h"
#include "support/texts.h"

namespace morvane {
namespace {

// The new, described product "app", which an ordinary user installs and everybody may use, and no
// file of which is there to be copied.
class app_facts {
 public:
  app_facts() {
    app.install = product_state::CONFIGURED;
    app.descr_avail = DESCRIBED;
    app.id = "app";
    app.name = "app";
    app.path = "/opt/app";
    app.owner = "me";
    app.group = "us";
  }
  std::string rules() const { return product_rules(all_facts()); }

  product_facts all_facts() const {
    product_facts all = facts_of(app);
    all.superuser = facts.superuser;
    all.link_option = facts.link_option;
    all.old_owner = facts.old_owner;
    all.old_group = facts.old_group;
    all.files = facts.files;
    return all;
  }

  product app;
  product_facts facts;
};

// Returns the rule `name` of `text`, up to the first empty line.
std::string rule_of(const std::string& text, const std::string& name) {
  const std::size_t start = ("\n" + text).find("\n" + name + ":");
  if (start == std::string::npos) return "";
  return text.substr(start, text.find("\n\n", start) + 1 - start);
}

TEST(MainRule, NamesTheStepsInTheirOrder) {
  const struct {
    bool installs, described, target;
    const char* rule;
  } cases[] = {
      {true, true, true, "app-message app-new app-dat-file \\\n\t\tapp-main  \\\n"},
      {true, true, false, "app-message app-new app-dat-file \\\n"},
      {true, false, true, "app-message app-new \\\n\t\tapp-main  \\\n"},
      {true, false, false, "app-message app-new \\\n"},
      {false, true, true, "app-message app-dat-file \\\n\t\tapp-main  \\\n"},
      {false, true, false, "app-message app-dat-file \\\n"},
      {false, false, true, "app-message \\\n\t\tapp-main  \\\n"},
      {false, false, false, "app-message \\\n"},
  };
  for (const auto& [installs, described, target, rule] : cases) {
    app_facts seen;
    if (!installs) seen.app.install = product_state::SELECTED_FOR_RECONFIGURATION;
    seen.app.descr_avail = described ? DESCRIBED : NO_DESCRIPTION;
    if (target) add_target(seen.app, "main", target_state::RESOLVED);
    EXPECT_EQ(rule_of(seen.rules(), "app"), std::string("app: ") + rule + "\t\tapp-succeeded\n");
  }
}

TEST(MainRule, HandsOnWhatWasLeftBehindTheTargets) {
  const struct {
    bool closed, owner, group;
    const char* line;
  } cases[] = {
      {true, true, true, "\t\tapp-permission-old app-owner-old app-group-old \\\n"},
      {true, true, false, "\t\tapp-permission-old app-owner-old  \\\n"},
      {true, false, true, "\t\tapp-permission-old app-group-old \\\n"},
      {true, false, false, ""},
      {false, true, true, "\t\tapp-owner-old app-group-old \\\n"},
      {false, true, false, "\t\tapp-owner-old  \\\n"},
      {false, false, true, "\t\tapp-group-old \\\n"},
      {false, false, false, ""},
  };
  for (const auto& [closed, owner, group, line] : cases) {
    app_facts seen;
    seen.app.descr_avail = NO_DESCRIPTION;
    seen.app.other_access = closed ? 0 : 1;
    if (owner) seen.facts.old_owner = "root";
    if (group) seen.facts.old_group = "wheel";
    const std::string text = seen.rules();
    EXPECT_EQ(rule_of(text, "app"),
              "app: app-message app-new \\\n" + std::string(line) + "\t\tapp-succeeded\n");
    for (const char* step : {"app-permission-old", "app-owner-old", "app-group-old"}) {
      EXPECT_EQ(!rule_of(text, step).empty(), contains(line, step)) << step;
    }
  }
}

TEST(MainRule, NamesTheTargetsThatAreMadeAndEachHasItsRule) {
  app_facts seen;
  add_target(seen.app, "wanted", target_state::WANTED);
  add_target(seen.app, "first", target_state::RESOLVED);
  add_target(seen.app, "last", target_state::RESOLVED);
  const std::string text = seen.rules();
  EXPECT_TRUE(contains(text, "app-dat-file \\\n\t\tapp-first app-last  \\\n\t\tapp-succeeded\n"));
  EXPECT_FALSE(contains(text, "wanted"));
  EXPECT_EQ(rule_of(text, "app-last"),
            "app-last: /opt/app/install/app.make\n\techo \"** making 'last' for 'app'\"\n"
            "\tcd /opt/app/install; $(MAKE) -f app.make last\n");
}

TEST(NewRule, NamesOwnerAndPermissionWhereTheyAreSet) {
  const struct {
    bool superuser, closed;
    const char* rule;
  } cases[] = {
      {true, true, "app-tar app-owner \\\n\t\tapp-group app-permission \\\n"},
      {true, false, "app-tar app-owner \\\n\t\tapp-group \\\n"},
      {false, true, "app-tar \\\n\t\tapp-group app-permission \\\n"},
      {false, false, "app-tar \\\n\t\tapp-group \\\n"},
  };
  for (const auto& [superuser, closed, rule] : cases) {
    app_facts seen;
    seen.facts.superuser = superuser;
    seen.app.other_access = closed ? 0 : 1;
    const std::string text = seen.rules();
    EXPECT_EQ(rule_of(text, "app-new"),
              std::string("app-new:\t") + rule + "\t\tapp-inst-files app-make\n");
    EXPECT_EQ(contains(text, "\napp-owner:"), superuser);
    EXPECT_EQ(contains(text, "\napp-permission:"), closed);
  }
}

TEST(CopiedFiles, GetOwnerGroupAndAccess) {
  const struct {
    bool superuser, closed;
    const char* changes;
  } cases[] = {
      {true, true,
       "\tchown me /opt/app/install/app.dat && \\\n\tchgrp us /opt/app/install/app.dat && \\\n"
       "\tchmod o-rwx /opt/app/install/app.dat  )\n"},
      {true, false,
       "\tchown me /opt/app/install/app.dat && \\\n\tchgrp us /opt/app/install/app.dat  )\n"},
      {false, true,
       "\tchgrp us /opt/app/install/app.dat && \\\n\tchmod o-rwx /opt/app/install/app.dat  )\n"},
      {false, false, "\tchgrp us /opt/app/install/app.dat  )\n"},
  };
  for (const auto& [superuser, closed, changes] : cases) {
    app_facts seen;
    seen.facts.superuser = superuser;
    seen.app.other_access = closed ? 0 : 1;
    seen.facts.files = {"app.dat"};
    EXPECT_EQ(rule_of(seen.rules(), "app-dat-file"),
              "app-dat-file: app-inst-dir\n"
              "\tdiff ./app.dat /opt/app/install/app.dat > /dev/null 2>&1 || \\\n"
              "\t(cp -p ./app.dat /opt/app/install && \\\n" +
                  std::string(changes));
  }
}

TEST(CopiedFiles, AreThoseThatAreThere) {
  app_facts seen;
  const std::string heading = "\techo \"** copying installation stuff to /opt/app\"\n";
  EXPECT_TRUE(contains(seen.rules(), "\napp-inst-files: app-inst-dir\n" + heading +
                                         "\n\napp-dat-file: app-inst-dir\n\n\napp-inst-dir:\n"));
  seen.facts.files = {"Makefile", "app.descr"};
  const std::string text = seen.rules();
  EXPECT_TRUE(contains(text, heading +
                                 "\tdiff ./Makefile /opt/app/Makefile > /dev/null 2>&1 || \\\n"
                                 "\t(cp -p ./Makefile /opt/app && \\\n"
                                 "\tchgrp us /opt/app/Makefile  )\n"
                                 "\tdiff ./app.descr /opt/app/install/app.descr > /dev/null"));
  EXPECT_TRUE(contains(text, "\n\n\napp-dat-file: app-inst-dir\n\n\n"));
}

TEST(LeftFilesRules, LoseTheAccessOfOthersByOwnerAndByGroup) {
  const std::string of_owner =
      "\techo \"** removing other access for files with owner 'root'\"\n"
      "\tcd /opt/app; find . -user root -exec chmod o= {} \\; 2>/dev/null\n";
  const std::string of_group =
      "\techo \"** removing other access for files with group 'wheel'\"\n"
      "\tcd /opt/app; find . -group wheel -exec chmod o= {} \\; 2>/dev/null\n";
  app_facts seen;
  seen.app.other_access = 0;
  EXPECT_EQ(rule_of(seen.rules(), "app-permission-old"), "");
  seen.facts.old_owner = "root";
  EXPECT_EQ(rule_of(seen.rules(), "app-permission-old"), "app-permission-old:\n" + of_owner);
  seen.facts.old_group = "wheel";
  EXPECT_EQ(rule_of(seen.rules(), "app-permission-old"),
            "app-permission-old:\n" + of_owner + of_group);
  seen.facts.old_owner = std::nullopt;
  EXPECT_EQ(rule_of(seen.rules(), "app-permission-old"), "app-permission-old:\n" + of_group);
}

// Calls `look` with every combination of what the texts depend on.
void for_all_facts(const std::function<void(const product_facts&)>& look) {
  for (unsigned bits = 0; bits < 512; ++bits) {
    const auto holds = [&](unsigned bit) { return (bits >> bit & 1U) != 0; };
    app_facts seen;
    if (holds(0)) seen.app.install = product_state::SELECTED_FOR_RECONFIGURATION;
    if (holds(1)) seen.app.descr_avail = NO_DESCRIPTION;
    if (holds(2)) seen.app.other_access = 0;
    if (holds(3)) add_target(seen.app, "main", target_state::RESOLVED);
    if (holds(4)) seen.facts.files = {"Makefile", "app.descr", "app.dat"};
    if (holds(5)) seen.facts.old_owner = "root";
    if (holds(6)) seen.facts.old_group = "wheel";
    seen.facts.superuser = holds(7);
    seen.facts.link_option = holds(8);
    SCOPED_TRACE(bits);
    look(seen.all_facts());
  }
}

TEST(ProductRules, LeaveNoPlaceUnfilled) {
  for_all_facts([](const product_facts& facts) {
    std::string text = product_rules(facts);
    for (std::size_t at; (at = text.find("{}")) != std::string::npos;) text.erase(at, 2);
    EXPECT_EQ(text.find_first_of("{}"), std::string::npos);
  });
}

TEST(ProductRules, AreThereForEveryStepThatIsNamed) {
  for_all_facts([](const product_facts& facts) {
    const std::string text = product_rules(facts);
    std::string steps;
    for (const char* rule : {"app", "app-new", "app-inst-files", "app-dat-file"}) {
      steps += rule_of(text, rule);
    }
    std::istringstream words(steps);
    for (std::string word; words >> word;) {
      if (!word.starts_with("app-") || word.ends_with(":")) continue;
      EXPECT_TRUE(contains(text, "\n" + word + ":") || contains(text, "\n" + word + " ")) << word;
    }
  });
}

TEST(ProductRules, ChangeOwnersForTheSuperuserOnly) {
  for_all_facts([](const product_facts& facts) {
    EXPECT_EQ(contains(product_rules(facts), "chown"), facts.superuser || facts.old_owner);
  });
}

TEST(ProductRules, ChangeAccessOnlyWhereOthersLoseIt) {
  for_all_facts([](const product_facts& facts) {
    EXPECT_EQ(contains(product_rules(facts), "chmod"), facts.closed);
  });
}

TEST(ProductRules, DoNotLookAtWhatWasInserted) {
  app_facts seen;
  seen.app.id = "{path}";
  seen.app.path = "{closed}{id}";
  seen.app.full_name = "{superuser} {copied settings file} {}";
  add_target(seen.app, "{target}{!new}", target_state::RESOLVED);
  const std::string text = seen.rules();
  EXPECT_TRUE(
      text.starts_with("{path}: {path}-message {path}-new {path}-dat-file \\\n"
                       "\t\t{path}-{target}{!new}  \\\n\t\t{path}-succeeded\n"));
  EXPECT_TRUE(contains(text, "installation of '{superuser} {copied settings file} {}'  ***"));
  EXPECT_TRUE(contains(text, "\n{path}-{target}{!new}: {closed}{id}/install/{path}.make\n"));
}

TEST(MakefileText, NamesTheDirectoryAndTheProducts) {
  app_facts app;
  app_facts other;
  other.app.id = "{products}";
  const std::string text =
      makefile_text("/dist", {app.all_facts(), other.all_facts(), app.all_facts()});
  EXPECT_TRUE(text.starts_with("#\n# This file was generated automatically by 'morvane'.\n\n"));
  EXPECT_TRUE(contains(text, "\nTAR_PATH\t= /dist\n\n\ninstall:        products\n"));
  EXPECT_TRUE(contains(text, "\nproducts: app {products} app\n"));
  EXPECT_TRUE(contains(text, product_rules(app.all_facts())));
  EXPECT_TRUE(contains(text, product_rules(other.all_facts())));
}

TEST(MakefileText, WithoutProductsHasHeadAndTail) {
  const std::string line(77, '#');
  EXPECT_EQ(makefile_text("/dist", {}),
            "#\n# This file was generated automatically by 'morvane'.\n\n.SILENT:\n\n"
            "CC\t\t= /usr/bin/cc\n"
            "INST_FILES\t= morvane.rsc morvane.SunOS4 morvane.SunOS5 Makefile\n"
            "TAR_PATH\t= /dist\n\n\ninstall:        products\n\nproducts:\n\n" +
                line + "\n\n.c:\n\techo \"** compiling $@\"\n\t$(CC) $(OPTS) -o ./$@ ./$*.c\n\n\n");
}

}  // namespace
}  // namespace morvane

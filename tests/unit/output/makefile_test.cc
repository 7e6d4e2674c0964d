#include "output/makefile.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <sstream>

#include "output/makefile_text.h"
#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"
#include "support/texts.h"

namespace {

// What the host calls every user and group looked up by number; null: by their own names.
char* name_of_all = nullptr;

}  // namespace

// Stand in for the library's functions in this program, so that the tests can rename who runs it.
extern "C" passwd* getpwuid(uid_t id) {
  passwd* entry = reinterpret_cast<decltype(&getpwuid)>(dlsym(RTLD_NEXT, "getpwuid"))(id);
  if (entry != nullptr && name_of_all != nullptr) entry->pw_name = name_of_all;
  return entry;
}

extern "C" group* getgrgid(gid_t id) {
  group* entry = reinterpret_cast<decltype(&getgrgid)>(dlsym(RTLD_NEXT, "getgrgid"))(id);
  if (entry != nullptr && name_of_all != nullptr) entry->gr_name = name_of_all;
  return entry;
}

namespace morvane {
namespace {

const std::string HEAD = R"mk(# <141>
# <142>
#
# <143> @(#)morvane	1.20	95/06/08 

#
# This file was generated automatically by 'morvane'.

.SILENT:

CC		= /usr/bin/cc
INST_FILES	= morvane.rsc morvane.SunOS4 morvane.SunOS5 Makefile
TAR_PATH	= )mk";

const std::string TAIL = R"mk(
#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c


)mk";

// What the superuser's makefile says of a new product on a host where links must not be followed:
// two targets, other users lose their access, no executables in the distribution.
const std::string NEW_PRODUCT = R"mk(
#############################################################################

app: app-message app-new app-dat-file \
		app-main app-more  \
		app-permission-old app-owner-old app-group-old \
		app-succeeded


app-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'The App'  ***"
	echo " "



app-new:	app-tar app-owner \
		app-group app-permission \
		app-inst-files app-make



app-tar: app.tar
	echo "** extracting $(TAR_PATH)/app.tar to /opt/app"
	cd /opt/app; tar -xvpf $(TAR_PATH)/app.tar
	cd /opt/app; rm -f $(TAR_PATH)/app.tar-contence


app.tar-contence: app.tar
	echo "** getting contence of $(TAR_PATH)/app.tar"
	tar -tf $(TAR_PATH)/app.tar | cut -f1 -d" " > $(TAR_PATH)/app.tar-contence


app-inst-files: app-inst-dir
	echo "** copying installation stuff to /opt/app"
	diff ./morvane.rsc /opt/app/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc /opt/app && \
	chown me /opt/app/morvane.rsc && \
	chgrp us /opt/app/morvane.rsc && \
	chmod o-rwx /opt/app/morvane.rsc  )
	diff ./Makefile /opt/app/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile /opt/app && \
	chown me /opt/app/Makefile && \
	chgrp us /opt/app/Makefile && \
	chmod o-rwx /opt/app/Makefile  )
	diff ./app.descr /opt/app/install/app.descr > /dev/null 2>&1 || \
	(cp -p ./app.descr /opt/app/install && \
	chown me /opt/app/install/app.descr && \
	chgrp us /opt/app/install/app.descr && \
	chmod o-rwx /opt/app/install/app.descr  )


app-dat-file: app-inst-dir
	diff ./app.dat /opt/app/install/app.dat > /dev/null 2>&1 || \
	(cp -p ./app.dat /opt/app/install && \
	chown me /opt/app/install/app.dat && \
	chgrp us /opt/app/install/app.dat && \
	chmod o-rwx /opt/app/install/app.dat  )


app-inst-dir:
	if test -d /opt/app/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '/opt/app'"; \
		mkdir /opt/app/install; \
		chown me /opt/app/install; \
		chgrp us /opt/app/install; \
		chmod o-rwx /opt/app/install; \
	fi

app-make /opt/app/install/app.make:
	if test -f /opt/app/install/Makefile; then \
		echo "** preparing product specific Makefile '/opt/app/install/app.make'"; \
		echo "include app.dat" > /opt/app/install/app.make; \
		cat /opt/app/install/Makefile >> /opt/app/install/app.make; \
		rm -f /opt/app/install/Makefile; \
		chown me /opt/app/install/app.make; \
		chgrp us /opt/app/install/app.make; \
		chmod o-rwx /opt/app/install/app.make; \
	else \
		if test "$@" != "app-make"; then \
			echo "Makefile '/opt/app/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


app-owner: app.tar-contence
	echo "** changing owner to 'me' inside the tree '/opt/app'"
	cd /opt/app; /usr/bin/chown -h me `cat $(TAR_PATH)/app.tar-contence`

app-group: app.tar-contence
	echo "** changing group to 'us' inside the tree '/opt/app'"
	cd /opt/app; /usr/bin/chgrp -h us `cat $(TAR_PATH)/app.tar-contence`

app-permission: app.tar-contence
	echo "** changing permissions inside the tree '/opt/app'"
	cd /opt/app; chmod o-rwx `cat $(TAR_PATH)/app.tar-contence`


app-permission-old:
	echo "** removing other access for files with owner 'root'"
	cd /opt/app; find . -user root -exec chmod o= {} \; 2>/dev/null
	echo "** removing other access for files with group 'root'"
	cd /opt/app; find . -group root -exec chmod o= {} \; 2>/dev/null

app-owner-old:
	echo "** changing owner to 'me' for all files with owner 'root'"
	cd /opt/app; find . -user root -exec /usr/bin/chown -h me {} \; 2>/dev/null

app-group-old:
	echo "** changing group to 'us' for all files with group 'root'"
	cd /opt/app; find . -group root -exec /usr/bin/chgrp -h us {} \; 2>/dev/null


app-main: /opt/app/install/app.make
	echo "** making 'main' for 'app'"
	cd /opt/app/install; $(MAKE) -f app.make main

app-more: /opt/app/install/app.make
	echo "** making 'more' for 'app'"
	cd /opt/app/install; $(MAKE) -f app.make more

app-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "

)mk";

// What an ordinary user's makefile says of a new product without description, to which other users
// keep their access.
const std::string PLAIN_PRODUCT = R"mk(
#############################################################################

app: app-message app-new \
		app-group-old \
		app-succeeded


app-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'app'  ***"
	echo " "



app-new:	app-tar \
		app-group \
		app-inst-files app-make



app-tar: app.tar
	echo "** extracting $(TAR_PATH)/app.tar to /opt/app"
	cd /opt/app; tar -xvpf $(TAR_PATH)/app.tar
	cd /opt/app; rm -f $(TAR_PATH)/app.tar-contence


app.tar-contence: app.tar
	echo "** getting contence of $(TAR_PATH)/app.tar"
	tar -tf $(TAR_PATH)/app.tar | cut -f1 -d" " > $(TAR_PATH)/app.tar-contence


app-inst-files:
	echo "** copying installation stuff to /opt/app"
	diff ./Makefile /opt/app/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile /opt/app && \
	chgrp us /opt/app/Makefile  )


app-make /opt/app/install/app.make:
	if test -f /opt/app/install/Makefile; then \
		echo "** preparing product specific Makefile '/opt/app/install/app.make'"; \
		echo "include app.dat" > /opt/app/install/app.make; \
		cat /opt/app/install/Makefile >> /opt/app/install/app.make; \
		rm -f /opt/app/install/Makefile; \
		chgrp us /opt/app/install/app.make; \
	else \
		if test "$@" != "app-make"; then \
			echo "Makefile '/opt/app/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


app-group: app.tar-contence
	echo "** changing group to 'us' inside the tree '/opt/app'"
	cd /opt/app; chgrp us `cat $(TAR_PATH)/app.tar-contence`


app-group-old:
	echo "** changing group to 'us' for all files with group 'OLD'"
	cd /opt/app; find . -group OLD -exec chgrp us {} \; 2>/dev/null


app-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "

)mk";

std::string head_of(const std::string& directory, const std::string& products) {
  return HEAD + directory + "\n\n\ninstall:        products\n\nproducts:" + products + "\n";
}

// A directory with the files of the new product "app" that is to be installed.
class distribution {
 public:
  distribution() {
    open_to_everybody(".");
    use_test_messages();
    app.full_name = "The App";
    app.descr_avail = FIXED_LISTS;
    app.path = "/opt/app";
    app.owner = "me";
    app.group = "us";
    app.other_access = 0;
    for (const char* file : {"morvane.rsc", "Makefile", "app.descr", "app.dat"}) {
      write_file(file, "");
    }
  }
  void add_targets() {
    add_target(app, "main", target_state::RESOLVED);
    add_target(app, "left out", target_state::WANTED);
    add_target(app, "more", target_state::RESOLVED);
  }
  // Writes the makefile for "app" alone.
  outcome write(const std::string& host = "SunOS 5.5.1", bool as_ordinary_user = false) {
    return in_child("", [&] {
      pretend_host(host);
      if (as_ordinary_user) become_ordinary_user();
      write_makefile({&app});
      return "";
    });
  }
  std::string written(const std::string& host = "Linux 6.1", bool as_ordinary_user = false) {
    write(host, as_ordinary_user);
    return read_file("install.mk");
  }
  std::string path() const { return directory_.path(); }

 private:
  scratch_directory directory_;

 public:
  product_table table;
  product& app = add_product(table, "app", product_state::CONFIGURED);
};

// Returns the rules of `makefile` for "app", such as "message new tar".
std::string rules_of(const std::string& makefile) {
  std::string rules;
  std::istringstream lines(makefile);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t end = line.find_first_of(": ");
    if (!line.starts_with("app") || end == std::string::npos || end <= 4) continue;
    rules += (rules.empty() ? "" : " ") + line.substr(4, end - 4);
  }
  return rules;
}

TEST(Makefile, InstallsANewProduct) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_SUPERUSER;
  distribution d;
  d.add_targets();
  const outcome seen = d.write();
  EXPECT_EQ(read_file("install.mk"), head_of(d.path(), " app") + NEW_PRODUCT + TAIL);
  EXPECT_EQ(seen.out, "");
  EXPECT_EQ(seen.err, missing_file("morvane.SunOS4") + missing_file("morvane.SunOS5"));
}

TEST(Makefile, OfAnOrdinaryUserChangesNoOwners) {
  distribution d;
  d.app.full_name = "";
  d.app.descr_avail = NO_DESCRIPTION;
  d.app.other_access = 1;
  std::filesystem::remove("morvane.rsc");
  const std::string old_group = group_name(ordinary_group());
  std::string expected = PLAIN_PRODUCT;
  for (std::size_t at; (at = expected.find("OLD")) != std::string::npos;) {
    expected.replace(at, 3, old_group);
  }
  EXPECT_EQ(d.written("Linux 6.1", true), head_of(d.path(), " app") + expected + TAIL);
}

TEST(Makefile, OfAnOrdinaryUserHasNoOwnerLineInAnyRule) {
  distribution d;
  d.add_targets();
  const std::string text = d.written("SunOS 5.5.1", true);
  EXPECT_FALSE(contains(text, "chown"));
  EXPECT_EQ(rules_of(text),
            "message new tar tar-contence inst-files dat-file inst-dir make group permission "
            "permission-old group-old main more succeeded");
  EXPECT_TRUE(contains(text, "app-permission-old app-group-old \\\n"));
  EXPECT_TRUE(contains(text,
                       "app-permission-old:\n\techo \"** removing other access for files "
                       "with group '" +
                           group_name(ordinary_group()) + "'\"\n"));
}

TEST(Makefile, HasOwnerLinesWhereItsWriterActsAsSuperuserWhoeverStartedIt) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_TWO_USERS;
  distribution d;
  const auto rules = [&] { return product_rules(gather_facts(d.app, "SunOS5")); };
  const std::string acts = in_child_of_two_users(NOBODY, 0, "", rules).result;
  EXPECT_TRUE(contains(acts, "app-new:\tapp-tar app-owner"));
  EXPECT_TRUE(contains(acts, "find . -user root -exec /usr/bin/chown -h me"));
  const std::string started = in_child_of_two_users(0, NOBODY, "", rules).result;
  EXPECT_TRUE(contains(started, "app-new:\tapp-tar \\\n"));
  EXPECT_FALSE(contains(started, "chown"));
}

TEST(Makefile, WithoutProductsHasHeadAndTail) {
  const distribution d;
  const outcome seen = in_child("", [] {
    write_makefile({});
    return "";
  });
  EXPECT_EQ(read_file("install.mk"), head_of(d.path(), "") + TAIL);
  EXPECT_EQ(seen.written(), "");
}

TEST(Makefile, NamesTheProductsOfTheOrder) {
  distribution d;
  installation_order order{};
  product& again = add_product(d.table, "again", product_state::SELECTED_FOR_RECONFIGURATION);
  order[0] = &add_product(d.table, "", product_state::CONFIGURED);
  order[2] = &d.app;
  order[3] = &add_product(d.table, "selected", product_state::SELECTED);
  order[4] = &add_product(d.table, "installed", product_state::INSTALLED);
  order[5] = &again;
  order[49] = &d.app;
  in_child("", [&] {
    write_makefile(order);
    return "";
  });
  const std::string text = read_file("install.mk");
  EXPECT_TRUE(text.starts_with(head_of(d.path(), " app again app")));
  EXPECT_LT(text.find("\napp: "), text.find("\nagain: "));
  EXPECT_LT(text.find("\nagain: "), text.rfind("\napp: "));
  EXPECT_FALSE(contains(text, "\nselected: ") || contains(text, "\ninstalled: "));
}

TEST(Makefile, ConfiguresAnInstalledProductAgain) {
  distribution d;
  d.add_targets();
  d.app.install = product_state::SELECTED_FOR_RECONFIGURATION;
  const std::string text = d.written();
  EXPECT_EQ(rules_of(text), "message dat-file inst-dir make main more succeeded");
  EXPECT_TRUE(contains(
      text, "app: app-message app-dat-file \\\n\t\tapp-main app-more  \\\n\t\tapp-succeeded\n"));
  d.app.descr_avail = NO_DESCRIPTION;
  EXPECT_EQ(rules_of(d.written()), "message make main more succeeded");
}

TEST(Makefile, WithoutDescriptionHasNoSettingsRule) {
  distribution d;
  d.app.descr_avail = NO_DESCRIPTION;
  const std::string text = d.written();
  EXPECT_FALSE(contains(text, "-dat-file") || contains(text, "-inst-dir"));
  EXPECT_FALSE(contains(text, ".descr"));
  EXPECT_TRUE(contains(text, "\napp-inst-files:\n"));
}

TEST(Makefile, ADescribedProductHandsNothingOn) {
  distribution d;
  d.app.descr_avail = DESCRIBED;
  const std::string text = d.written("Linux 6.1", true);
  EXPECT_EQ(rules_of(text),
            "message new tar tar-contence inst-files dat-file inst-dir make group permission "
            "succeeded");
  EXPECT_TRUE(contains(text, "app: app-message app-new app-dat-file \\\n\t\tapp-succeeded\n"));
}

TEST(Makefile, NamesAnOldOwnerByNumberWhereMakeWouldInterpretTheName) {
  distribution d;
  char special[] = "ro$ot";
  name_of_all = special;
  const std::string text = d.written();
  name_of_all = nullptr;
  const std::string user = std::to_string(geteuid());
  const std::string group = std::to_string(getegid());
  EXPECT_TRUE(contains(text, " for all files with group '" + group + "'\""));
  EXPECT_TRUE(contains(text, "find . -group " + group + " -exec"));
  EXPECT_EQ(contains(text, "find . -user " + user + " -exec"), is_superuser());
  EXPECT_FALSE(contains(text, "ro$ot"));
}

TEST(Makefile, FollowsLinksOnOtherSystems) {
  distribution d;
  for (const char* host : {"SunOS 4.1.3", "SunOS 51", "Linux 6.1", ""}) {
    const std::string text = d.written(host);
    EXPECT_FALSE(contains(text, " -h ")) << host;
    EXPECT_TRUE(contains(text, "; chgrp us `cat $(TAR_PATH)/app.tar-contence`\n"));
    EXPECT_TRUE(contains(text, " -exec chgrp us {} \\; 2>/dev/null\n"));
    EXPECT_EQ(contains(text, "; chown me `cat"), is_superuser());
  }
  EXPECT_TRUE(contains(d.written("SunOS 5"), "; /usr/bin/chgrp -h us `cat"));
}

TEST(Makefile, AsksForTheHostOnceAndThenForTheFilesOfEachProduct) {
  distribution d;
  product& other = add_product(d.table, "other", product_state::SELECTED_FOR_RECONFIGURATION);
  other.descr_avail = DESCRIBED;
  const outcome seen = in_child("", [&] {
    pretend_host("");
    write_makefile({&other, &d.app, &other});
    return "";
  });
  EXPECT_EQ(seen.err, "morvane : warning : failed to get current operating system.\n" +
                          missing_file("other.dat") + missing_file("morvane.SunOS4") +
                          missing_file("morvane.SunOS5") + missing_file("other.dat"));
}

TEST(Makefile, KeepsTheAccessOfOtherUsers) {
  distribution d;
  d.app.other_access = 1;
  const std::string text = d.written();
  EXPECT_FALSE(contains(text, "-permission"));
  EXPECT_FALSE(contains(text, "chmod"));
  EXPECT_TRUE(contains(text, "app-group-old"));
}

TEST(Makefile, ShowsAnEmptyNameOfTargetsAndTheFullNameElsewhere) {
  distribution d;
  d.add_targets();
  d.app.name = "";
  EXPECT_TRUE(contains(d.written(), "\techo \"** making 'main' for ''\"\n"));
  EXPECT_TRUE(contains(d.written(), "***  installation of 'The App'  ***"));
  d.app.full_name = "";
  EXPECT_TRUE(contains(d.written(), "***  installation of 'app'  ***"));
}

TEST(Makefile, LeavesMissingFilesOut) {
  distribution d;
  for (const char* file : {"morvane.rsc", "Makefile", "app.descr", "app.dat"}) {
    std::filesystem::remove(file);
  }
  std::filesystem::create_directory("Makefile");
  EXPECT_EQ(d.write().err, missing_file("morvane.rsc") + missing_file("morvane.SunOS4") +
                               missing_file("morvane.SunOS5") + missing_file("Makefile") +
                               missing_file("app.descr") + missing_file("app.dat"));
  const std::string text = read_file("install.mk");
  EXPECT_FALSE(contains(text, "diff"));
  EXPECT_TRUE(contains(text, "\napp-dat-file: app-inst-dir\n\n\napp-inst-dir:\n"));
}

TEST(Makefile, CopiesEveryFileThatIsThere) {
  distribution d;
  write_file("morvane.SunOS4", "");
  write_file("morvane.SunOS5", "");
  EXPECT_EQ(d.write().err, "");
  const std::string text = read_file("install.mk");
  EXPECT_LT(text.find("diff ./morvane.rsc "), text.find("diff ./morvane.SunOS4 "));
  EXPECT_LT(text.find("diff ./morvane.SunOS5 "), text.find("diff ./Makefile "));
}

TEST(Makefile, TakesNamesAsTheyStand) {
  distribution d;
  add_target(d.app, "{owner}", target_state::RESOLVED);
  d.app.name = "{} %s";
  EXPECT_TRUE(contains(d.written(), "\techo \"** making '{owner}' for '{} %s'\"\n"));
  d.app.id = "x; touch evil; #";
  EXPECT_TRUE(contains(d.write().err, missing_file("x; touch evil; #.dat")));
  EXPECT_FALSE(std::filesystem::exists("evil"));
}

TEST(Makefile, WithoutTheCurrentDirectoryThereIsNone) {
  const distribution d;
  for (const bool earlier : {false, true}) {
    if (earlier) write_file("install.mk", "of an earlier run");
    const outcome seen = in_child("", [] {
      const std::string occupied = "/tmp/" + std::to_string(getpid()) + ".tmp";
      std::filesystem::create_directory(occupied);
      write_file("occupied", occupied);
      write_makefile({});
      return "";
    });
    const std::string occupied = read_file("occupied");
    std::filesystem::remove(occupied);
    EXPECT_FALSE(seen.returned);
    EXPECT_EQ(seen.status, 1);
    EXPECT_EQ(seen.out, "<299>");
    EXPECT_EQ(seen.err, "morvane : error : cannot create temporary file '" + occupied +
                            "'\nmorvane : error : failed to get current directory.\n");
    EXPECT_FALSE(std::filesystem::exists("install.mk"));
  }
}

TEST(Makefile, ThatCannotBeOpenedEndsTheProgramBeforeTheHostIsAskedFor) {
  distribution d;
  std::filesystem::create_directory("install.mk");
  const outcome seen = d.write("");
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
  EXPECT_EQ(seen.out, "\n\n<95>install.mk<96>\n\n<299>");
  EXPECT_EQ(seen.err, "");
}

TEST(Makefile, ThatCannotBeWrittenInFullIsRemovedAndEndsTheProgram) {
  const distribution d;
  const outcome seen = in_child("", [] {
    limit_file_size(200);
    write_makefile({});
    return "";
  });
  EXPECT_FALSE(seen.returned);
  EXPECT_EQ(seen.status, 1);
  EXPECT_EQ(seen.out, "\n\n<95>install.mk<96>\n\n<299>");
  EXPECT_FALSE(std::filesystem::exists("install.mk"));
}

TEST(Makefile, AnExistingOneIsEmptiedAndKeepsItsMode) {
  const distribution d;
  write_file("install.mk", std::string(100000, 'x'));
  std::filesystem::permissions("install.mk", static_cast<std::filesystem::perms>(0640));
  in_child("", [] {
    write_makefile({});
    return "";
  });
  EXPECT_EQ(read_file("install.mk"), head_of(d.path(), "") + TAIL);
  EXPECT_EQ(std::filesystem::status("install.mk").permissions(),
            static_cast<std::filesystem::perms>(0640));
}

}  // namespace
}  // namespace morvane

#include "settings/ownership.h"

#include <gtest/gtest.h>

#include "support/child.h"
#include "support/messages.h"
#include "support/records.h"

namespace morvane {
namespace {

// A product "app" in slot 0 whose place is /opt.
class app_table {
 public:
  app_table() {
    app().path = "/opt";
    app().settled.path = path_state::CHOSEN;
  }
  product& app() { return app_; }
  product& add_neighbour(product_state state = product_state::CONFIGURED) {
    product& neighbour = add_product(table, "neighbour", state);
    neighbour.path = "/opt";
    neighbour.settled.path = path_state::CHOSEN;
    neighbour.settled.owner = neighbour.settled.group = true;
    return neighbour;
  }
  product_table table;

 private:
  product& app_ = add_product(table, "app", product_state::SELECTED);
};

// Settles the owner as an ordinary user, and returns it with the home directory.
outcome settle_owner(std::string_view typed, app_table& products) {
  use_test_messages();
  return in_child_as_ordinary_user(typed, [&] {
    get_product_owner(&products.app(), products.table);
    if (!products.app().settled.owner) return std::string("not settled");
    return products.app().owner.c_str() + std::string(" ") + products.app().homedir.c_str();
  });
}

outcome settle_group(std::string_view typed, app_table& products) {
  use_test_messages();
  const scratch_directory directory;
  open_to_everybody(".");
  return in_child_as_ordinary_user(typed, [&] {
    get_product_group(&products.app(), products.table);
    if (!products.app().settled.group) return std::string("not settled");
    return std::string(products.app().group);
  });
}

std::string own_user() {
  return user_name(ordinary_user());
}
std::string own_group() {
  return group_name(ordinary_group());
}

TEST(ShortProductName, PrefersTheName) {
  product record;
  record.id = "id";
  EXPECT_EQ(short_product_name(record), "id");
  record.full_name = "Full Name";
  EXPECT_EQ(short_product_name(record), "Full Name");
  record.name = "name";
  EXPECT_EQ(short_product_name(record), "name");
}

std::string special_name(const std::string& name) {
  return "morvane : error : name '" + name +
         "' holds characters that make or the shell would interpret\n";
}

TEST(Owner, WithSpecialCharactersIsUnknown) {
  app_table products;
  const outcome seen = settle_owner("x$\nx^x\n$\n" + own_user() + "\n", products);
  EXPECT_EQ(seen.out,
            "\n<30> 'app' : <31> 'x$' !\n<30> 'app' : <31> 'x^x' !\n<30> 'app' : <31> '$' !\n"
            "<30> 'app' : ");
  EXPECT_EQ(seen.err, special_name("x$") + special_name("x^x"));
}

TEST(Owner, WithSpecialCharactersIsNoDefault) {
  app_table products;
  products.app().owner = "x$";
  const outcome seen = settle_owner(own_user() + "\n", products);
  EXPECT_EQ(seen.out, "\n<30> 'app' : ");
  EXPECT_EQ(seen.err, "");
}

TEST(Group, WithSpecialCharactersIsUnknownAndNoDefault) {
  app_table products;
  products.app().group = "x$";
  const outcome seen = settle_group("x$\n" + own_group() + "\n", products);
  EXPECT_EQ(seen.out, "\n<32> 'app' : <33> 'x$' !\n<32> 'app' : ");
  EXPECT_EQ(seen.err, special_name("x$"));
}

TEST(Owner, IsAskedForWithoutDefault) {
  app_table products;
  products.app().owner_info = "Think twice.";
  const outcome seen = settle_owner("no such user\n" + own_user() + "\n", products);
  EXPECT_EQ(seen.out, "\nThink twice.\n\n<30> 'app' : <31> 'no such user' !\n<30> 'app' : ");
  EXPECT_EQ(seen.result, own_user() + " " + getpwuid(ordinary_user())->pw_dir);
}

TEST(Owner, EnterAloneTakesTheDefault) {
  app_table products;
  products.app().owner = own_user();
  const outcome seen = settle_owner("\n", products);
  EXPECT_EQ(seen.out, "\n<30> 'app' (" + own_user() + ") : ");
  EXPECT_EQ(seen.result.substr(0, seen.result.find(' ')), own_user());
}

TEST(Owner, AWrongAnswerKeepsTheDefault) {
  app_table products;
  products.app().owner = own_user();
  const std::string question = "<30> 'app' (" + own_user() + ") : ";
  EXPECT_EQ(settle_owner("nobody knows me\n\n", products).out,
            "\n" + question + "<31> 'nobody knows me' !\n" + question);
}

TEST(Owner, AnUnknownDefaultIsNotOfferedAndEnterIsRefused) {
  app_table products;
  products.app().owner = "gone";
  const outcome seen = settle_owner("\n" + own_user() + "\n", products);
  EXPECT_EQ(seen.out, "\n<30> 'app' : <97> <98> '' !\n<30> 'app' : ");
}

TEST(Owner, AUserWhoMayNotBeGivenFilesIsAskedForAgain) {
  app_table products;
  const outcome seen = settle_owner("root\n" + own_user() + "\n", products);
  EXPECT_EQ(seen.out, "\n<30> 'app' : <97> <98> 'root' !\n<30> 'app' : ");
  products.app().owner = "root";
  EXPECT_EQ(settle_owner("\n" + own_user() + "\n", products).out,
            "\n<30> 'app' (root) : <97> <98> 'root' !\n<30> 'app' (root) : ");
}

TEST(Owner, TheSuperuserNamesWhomHeLikes) {
  if (!is_superuser()) GTEST_SKIP() << NEEDS_SUPERUSER;
  use_test_messages();
  app_table products;
  // Enter alone is refused to him too, but without a complaint.
  const outcome seen = in_child("\nnobody\n", [&] {
    get_product_owner(&products.app(), products.table);
    return std::string(products.app().owner);
  });
  EXPECT_EQ(seen.result, "nobody");
  EXPECT_EQ(seen.out, "\n<30> 'app' : <30> 'app' : ");
}

TEST(Ownership, NamesOf49BytesAreTheLongest) {
  app_table products;
  const std::string longest(49, 'x');
  EXPECT_EQ(settle_owner(longest + "\nq\n", products).out,
            "\n<30> 'app' : <97> <98> '" + longest + "' !\n<30> 'app' : <299>");
  EXPECT_EQ(settle_group(longest + "\nq\n", products).out,
            "\n<32> 'app' : <97> <99> '" + longest + "' !\n<32> 'app' : <299>");
  const std::string longer = longest + "x";
  EXPECT_EQ(settle_owner(longer + "\nq\n", products).out,
            "\n<30> 'app' : <31> '" + longer + "' !\n<30> 'app' : <299>");
  EXPECT_EQ(settle_group(longer + "\nq\n", products).out,
            "\n<32> 'app' : <33> '" + longer + "' !\n<32> 'app' : <299>");
}

TEST(Owner, IsThatOfTheFirstSettledProductInTheSamePlace) {
  app_table products;
  products.add_neighbour(product_state::AVAILABLE).owner = "available";
  products.add_neighbour().path = "/opt/";
  products.add_neighbour().settled.path = path_state::UNSETTLED;
  products.add_neighbour().settled.owner = false;
  products.add_neighbour(product_state::INSTALLED).owner = own_user();
  products.add_neighbour().owner = "root";
  products.app().owner = "rejected";
  EXPECT_EQ(settle_owner("\n", products).out, "\n<30> 'app' (" + own_user() + ") : ");
}

TEST(Ownership, OfAProductInAScannedPlaceIsTheDefaultToo) {
  app_table products;
  product& neighbour = products.add_neighbour(product_state::INSTALLED);
  neighbour.settled.path = path_state::SCANNED;
  neighbour.owner = own_user();
  neighbour.group = own_group();
  EXPECT_EQ(settle_owner("\n", products).out, "\n<30> 'app' (" + own_user() + ") : ");
  EXPECT_EQ(settle_group("\n", products).out, "\n<32> 'app' (" + own_group() + ") : ");
}

TEST(Group, IsThatOfTheFirstSettledProductInTheSamePlace) {
  app_table products;
  products.add_neighbour(product_state::AVAILABLE).group = "available";
  products.add_neighbour().path = "/opt/";
  products.add_neighbour().settled.path = path_state::UNSETTLED;
  products.add_neighbour().settled.group = false;
  products.add_neighbour(product_state::INSTALLED).group = own_group();
  products.add_neighbour().group = "root";
  products.app().group = "rejected";
  EXPECT_EQ(settle_group("\n", products).out, "\n<32> 'app' (" + own_group() + ") : ");
}

TEST(Group, IsAskedForWithoutDefault) {
  app_table products;
  products.app().group_info = "Think twice.";
  const outcome seen = settle_group("no-such-group\n" + own_group() + "\n", products);
  EXPECT_EQ(seen.out, "\nThink twice.\n\n<32> 'app' : <33> 'no-such-group' !\n<32> 'app' : ");
  EXPECT_EQ(seen.result, own_group());
}

TEST(Group, AnUnknownDefaultIsNotOfferedAndEnterIsRefused) {
  app_table products;
  products.app().group = "gone";
  const outcome seen = settle_group("\n" + own_group() + "\n", products);
  EXPECT_EQ(seen.out, "\n<32> 'app' : <97> <99> '' !\n<32> 'app' : ");
}

TEST(Group, AForeignGroupIsAskedForAgain) {
  app_table products;
  const std::string foreign = foreign_group();
  products.app().group = foreign;
  const std::string question = "<32> 'app' (" + foreign + ") : ";
  const outcome seen = settle_group("\n" + own_group() + "\n", products);
  EXPECT_EQ(seen.out, "\n" + question + "<97> <99> '" + foreign + "' !\n" + question);
  EXPECT_EQ(seen.result, own_group());
}

TEST(Group, IsNotAUser) {
  if (getgrnam(own_user().c_str()) != nullptr) GTEST_SKIP() << "a group has the user's name";
  app_table products;
  EXPECT_EQ(settle_group(own_user() + "\nq\n", products).out,
            "\n<32> 'app' : <33> '" + own_user() + "' !\n<32> 'app' : <299>");
}

outcome settle_access(std::string_view typed, product& record) {
  use_test_messages();
  return in_child(typed, [&] {
    get_product_access(&record);
    return std::to_string(record.other_access) + (record.settled.access ? " settled" : "");
  });
}

TEST(OtherAccess, IsAYesOrNoQuestion) {
  app_table products;
  EXPECT_EQ(settle_access("n\n", products.app()).result, "0 settled");
  EXPECT_EQ(settle_access("n\n", products.app()).out, "<75 app> <35>\n");
  products.app().other_access = 0;
  EXPECT_EQ(settle_access("y\n", products.app()).result, "1 settled");
  EXPECT_EQ(settle_access("\n", products.app()).result, "1 settled");
}

TEST(OtherAccess, IsExplained) {
  app_table products;
  products.app().other_access_info = "Secret things.";
  EXPECT_EQ(settle_access("y\n", products.app()).out, "\nSecret things.\n<75 app> <35>\n");
  products.app().other_access_info = "";
  EXPECT_EQ(settle_access("y\n", products.app()).out, "\n\n<75 app> <35>\n");
}

TEST(Ownership, WhatIsSettledIsNotAskedFor) {
  app_table products;
  product& app = products.app();
  app.settled.owner = app.settled.group = app.settled.access = true;
  app.owner = "gone";
  app.group = "gone";
  products.add_neighbour().owner = own_user();
  EXPECT_EQ(settle_owner("", products).out, "");
  EXPECT_EQ(settle_owner("", products).result, "gone ");
  EXPECT_EQ(settle_group("", products).result, "gone");
  EXPECT_EQ(settle_access("", app).written(), "");
}

TEST(Ownership, OfNoProductIsAnError) {
  use_test_messages();
  product_table table;
  for (product* record : {&table[0], static_cast<product*>(nullptr)}) {
    const outcome seen = in_child("", [&] {
      get_product_owner(record, table);
      get_product_group(record, table);
      get_product_access(record);
      return "";
    });
    EXPECT_EQ(seen.err,
              "morvane : get_product_owner : error : invalid product\n"
              "morvane : get_product_group : error : invalid product\n"
              "morvane : get_product_access : error : invalid product\n");
    EXPECT_EQ(seen.out, "");
  }
}

TEST(Ownership, TheEndOfInputQuits) {
  app_table products;
  products.app().owner = own_user();
  EXPECT_FALSE(settle_owner(own_user(), products).returned);
  EXPECT_FALSE(settle_group("", products).returned);
  EXPECT_FALSE(settle_access("y", products.app()).returned);
  EXPECT_FALSE(settle_owner("q\n", products).returned);
}

}  // namespace
}  // namespace morvane

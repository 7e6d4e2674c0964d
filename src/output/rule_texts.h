// The texts that the installation makefile is made of, each as it stands there. See
// `text/places.h` for `{places}`, and for the conditions at the head of a line:
//
//   {new}         the product is installed for the first time, not configured again
//   {described}   it has a description
//   {targets}     some of its targets are made
//   {closed}      other users lose their access
//   {superuser}   the configurator acts as one: nobody else can change an owner
//   {owner left}  files left with the operator's own user are handed on
//   {group left}  the same for his group
#ifndef MORVANE_OUTPUT_RULE_TEXTS_H
#define MORVANE_OUTPUT_RULE_TEXTS_H

#include <string_view>

namespace morvane {

inline constexpr std::string_view FILE_HEAD = R"mk(#
# This file was generated automatically by '{program}'.

.SILENT:

CC		= /usr/bin/cc
INST_FILES	={installation files}
TAR_PATH	= {directory}


install:        products

products:{products}
)mk";

// Before each product, and before the tail.
inline constexpr std::string_view SEPARATOR = R"mk(
#############################################################################

)mk";

// make works through the prerequisites from left to right: these lines are the order of the steps.
// What was left loses its access first: the steps behind that change what it is found by.
inline constexpr std::string_view MAIN_RULE =
    R"mk({new}{described}{id}: {id}-message {id}-new {id}-dat-file \
{new}{!described}{id}: {id}-message {id}-new \
{!new}{described}{id}: {id}-message {id}-dat-file \
{!new}{!described}{id}: {id}-message \
{targets}		{target steps} \
{closed}{owner left}{group left}		{id}-permission-old {id}-owner-old {id}-group-old \
{closed}{owner left}{!group left}		{id}-permission-old {id}-owner-old  \
{closed}{!owner left}{group left}		{id}-permission-old {id}-group-old \
{!closed}{owner left}{group left}		{id}-owner-old {id}-group-old \
{!closed}{owner left}{!group left}		{id}-owner-old  \
{!closed}{!owner left}{group left}		{id}-group-old \
		{id}-succeeded


)mk";

// One of the target steps.
inline constexpr std::string_view TARGET_STEP = "{id}-{target} ";

inline constexpr std::string_view MESSAGE_RULE = R"mk({id}-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of '{shown name}'  ***"
	echo " "



)mk";

inline constexpr std::string_view NEW_RULE = R"mk({superuser}{id}-new:	{id}-tar {id}-owner \
{!superuser}{id}-new:	{id}-tar \
{closed}		{id}-group {id}-permission \
{!closed}		{id}-group \
		{id}-inst-files {id}-make



)mk";

// Removing the list of contents here has it made again from this archive.
inline constexpr std::string_view TAR_RULE = R"mk({id}-tar: {id}.tar
	echo "** extracting $(TAR_PATH)/{id}.tar to {path}"
	cd {path}; tar -xvpf $(TAR_PATH)/{id}.tar
	cd {path}; rm -f $(TAR_PATH)/{id}.tar-contence


)mk";

inline constexpr std::string_view TAR_CONTENCE_RULE = R"mk({id}.tar-contence: {id}.tar
	echo "** getting contence of $(TAR_PATH)/{id}.tar"
	tar -tf $(TAR_PATH)/{id}.tar | cut -f1 -d" " > $(TAR_PATH)/{id}.tar-contence


)mk";

// The copies, here and below, end their own lines: there may be none.
inline constexpr std::string_view INST_FILES_RULE =
    R"mk({described}{id}-inst-files: {id}-inst-dir
{!described}{id}-inst-files:
	echo "** copying installation stuff to {path}"
{copied installation files}

)mk";

inline constexpr std::string_view DAT_FILE_RULE = R"mk({id}-dat-file: {id}-inst-dir
{copied settings file}

)mk";

// A copied file; one that is the same already stays untouched.
inline constexpr std::string_view COPY =
    R"mk(	diff ./{file} {directory}/{file} > /dev/null 2>&1 || \
	(cp -p ./{file} {directory} && \
{superuser}	chown {owner} {directory}/{file} && \
{closed}	chgrp {group} {directory}/{file} && \
{closed}	chmod o-rwx {directory}/{file}  )
{!closed}	chgrp {group} {directory}/{file}  )
)mk";

inline constexpr std::string_view INST_DIR_RULE = R"mk({id}-inst-dir:
	if test -d {path}/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '{path}'"; \
		mkdir {path}/install; \
{superuser}		chown {owner} {path}/install; \
		chgrp {group} {path}/install; \
{closed}		chmod o-rwx {path}/install; \
	fi

)mk";

// The product's own makefile is consumed once. It may be missing where only the phony name is made:
// an earlier run has prepared it.
inline constexpr std::string_view MAKE_RULE = R"mk({id}-make {path}/install/{id}.make:
	if test -f {path}/install/Makefile; then \
		echo "** preparing product specific Makefile '{path}/install/{id}.make'"; \
		echo "include {id}.dat" > {path}/install/{id}.make; \
		cat {path}/install/Makefile >> {path}/install/{id}.make; \
		rm -f {path}/install/Makefile; \
{superuser}		chown {owner} {path}/install/{id}.make; \
		chgrp {group} {path}/install/{id}.make; \
{closed}		chmod o-rwx {path}/install/{id}.make; \
	else \
		if test "$@" != "{id}-make"; then \
			echo "Makefile '{path}/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


)mk";

inline constexpr std::string_view OWNER_RULE = R"mk({id}-owner: {id}.tar-contence
	echo "** changing owner to '{owner}' inside the tree '{path}'"
	cd {path}; {chown} {owner} `cat $(TAR_PATH)/{id}.tar-contence`

)mk";

inline constexpr std::string_view GROUP_RULE = R"mk({id}-group: {id}.tar-contence
	echo "** changing group to '{group}' inside the tree '{path}'"
	cd {path}; {chgrp} {group} `cat $(TAR_PATH)/{id}.tar-contence`

)mk";

inline constexpr std::string_view PERMISSION_RULE = R"mk({id}-permission: {id}.tar-contence
	echo "** changing permissions inside the tree '{path}'"
	cd {path}; chmod o-rwx `cat $(TAR_PATH)/{id}.tar-contence`

)mk";

// Before and behind the rules about files that were left.
inline constexpr std::string_view BLANK_LINE = "\n";

inline constexpr std::string_view PERMISSION_OLD_RULE = R"mk({id}-permission-old:
{owner left}	echo "** removing other access for files with owner '{old owner}'"
{owner left}	cd {path}; find . -user {old owner} -exec chmod o= {} \; 2>/dev/null
{group left}	echo "** removing other access for files with group '{old group}'"
{group left}	cd {path}; find . -group {old group} -exec chmod o= {} \; 2>/dev/null

)mk";

inline constexpr std::string_view OWNER_OLD_RULE = R"mk({id}-owner-old:
	echo "** changing owner to '{owner}' for all files with owner '{old owner}'"
	cd {path}; find . -user {old owner} -exec {chown} {owner} {} \; 2>/dev/null

)mk";

inline constexpr std::string_view GROUP_OLD_RULE = R"mk({id}-group-old:
	echo "** changing group to '{group}' for all files with group '{old group}'"
	cd {path}; find . -group {old group} -exec {chgrp} {group} {} \; 2>/dev/null

)mk";

inline constexpr std::string_view TARGET_RULES = "{target rules}";

// One of the target rules.
inline constexpr std::string_view TARGET_RULE = R"mk({id}-{target}: {path}/install/{id}.make
	echo "** making '{target}' for '{name}'"
	cd {path}/install; $(MAKE) -f {id}.make {target}

)mk";

inline constexpr std::string_view SUCCEEDED_RULE = R"mk({id}-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "

)mk";

inline constexpr std::string_view FILE_TAIL = R"mk(.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c


)mk";

}  // namespace morvane

#endif  // MORVANE_OUTPUT_RULE_TEXTS_H

# <141 generated head 1>
# <142 generated head 2>
#
# <143 generated head 3> @(#)morvane	1.20	95/06/08 

#
# This file was generated automatically by 'morvane'.

.SILENT:

CC		= /usr/bin/cc
INST_FILES	= morvane.rsc morvane.SunOS4 morvane.SunOS5 Makefile
TAR_PATH	= @DIR@/dist


install:        products

products: base fix

#############################################################################

base: base-message base-new base-dat-file \
		base-succeeded


base-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Base system'  ***"
	echo " "



base-new:	base-tar base-owner \
		base-group \
		base-inst-files base-make



base-tar: base.tar
	echo "** extracting $(TAR_PATH)/base.tar to @DIR@/opt/base"
	cd @DIR@/opt/base; tar -xvpf $(TAR_PATH)/base.tar
	cd @DIR@/opt/base; rm -f $(TAR_PATH)/base.tar-contence


base.tar-contence: base.tar
	echo "** getting contence of $(TAR_PATH)/base.tar"
	tar -tf $(TAR_PATH)/base.tar | cut -f1 -d" " > $(TAR_PATH)/base.tar-contence


base-inst-files: base-inst-dir
	echo "** copying installation stuff to @DIR@/opt/base"
	diff ./morvane.rsc @DIR@/opt/base/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.rsc && \
	chgrp root @DIR@/opt/base/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/base/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.SunOS4 && \
	chgrp root @DIR@/opt/base/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/base/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.SunOS5 && \
	chgrp root @DIR@/opt/base/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/base/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/base && \
	chown root @DIR@/opt/base/Makefile && \
	chgrp root @DIR@/opt/base/Makefile  )
	diff ./base.descr @DIR@/opt/base/install/base.descr > /dev/null 2>&1 || \
	(cp -p ./base.descr @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/base.descr && \
	chgrp root @DIR@/opt/base/install/base.descr  )


base-dat-file: base-inst-dir
	diff ./base.dat @DIR@/opt/base/install/base.dat > /dev/null 2>&1 || \
	(cp -p ./base.dat @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/base.dat && \
	chgrp root @DIR@/opt/base/install/base.dat  )


base-inst-dir:
	if test -d @DIR@/opt/base/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/base'"; \
		mkdir @DIR@/opt/base/install; \
		chown root @DIR@/opt/base/install; \
		chgrp root @DIR@/opt/base/install; \
	fi

base-make @DIR@/opt/base/install/base.make:
	if test -f @DIR@/opt/base/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/base/install/base.make'"; \
		echo "include base.dat" > @DIR@/opt/base/install/base.make; \
		cat @DIR@/opt/base/install/Makefile >> @DIR@/opt/base/install/base.make; \
		rm -f @DIR@/opt/base/install/Makefile; \
		chown root @DIR@/opt/base/install/base.make; \
		chgrp root @DIR@/opt/base/install/base.make; \
	else \
		if test "$@" != "base-make"; then \
			echo "Makefile '@DIR@/opt/base/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


base-owner: base.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chown root `cat $(TAR_PATH)/base.tar-contence`

base-group: base.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chgrp root `cat $(TAR_PATH)/base.tar-contence`



base-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

fix: fix-message fix-new fix-dat-file \
		fix-succeeded


fix-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Base system'  ***"
	echo " "



fix-new:	fix-tar fix-owner \
		fix-group \
		fix-inst-files fix-make



fix-tar: fix.tar
	echo "** extracting $(TAR_PATH)/fix.tar to @DIR@/opt/base"
	cd @DIR@/opt/base; tar -xvpf $(TAR_PATH)/fix.tar
	cd @DIR@/opt/base; rm -f $(TAR_PATH)/fix.tar-contence


fix.tar-contence: fix.tar
	echo "** getting contence of $(TAR_PATH)/fix.tar"
	tar -tf $(TAR_PATH)/fix.tar | cut -f1 -d" " > $(TAR_PATH)/fix.tar-contence


fix-inst-files: fix-inst-dir
	echo "** copying installation stuff to @DIR@/opt/base"
	diff ./morvane.rsc @DIR@/opt/base/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.rsc && \
	chgrp root @DIR@/opt/base/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/base/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.SunOS4 && \
	chgrp root @DIR@/opt/base/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/base/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.SunOS5 && \
	chgrp root @DIR@/opt/base/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/base/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/base && \
	chown root @DIR@/opt/base/Makefile && \
	chgrp root @DIR@/opt/base/Makefile  )
	diff ./fix.descr @DIR@/opt/base/install/fix.descr > /dev/null 2>&1 || \
	(cp -p ./fix.descr @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/fix.descr && \
	chgrp root @DIR@/opt/base/install/fix.descr  )


fix-dat-file: fix-inst-dir
	diff ./fix.dat @DIR@/opt/base/install/fix.dat > /dev/null 2>&1 || \
	(cp -p ./fix.dat @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/fix.dat && \
	chgrp root @DIR@/opt/base/install/fix.dat  )


fix-inst-dir:
	if test -d @DIR@/opt/base/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/base'"; \
		mkdir @DIR@/opt/base/install; \
		chown root @DIR@/opt/base/install; \
		chgrp root @DIR@/opt/base/install; \
	fi

fix-make @DIR@/opt/base/install/fix.make:
	if test -f @DIR@/opt/base/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/base/install/fix.make'"; \
		echo "include fix.dat" > @DIR@/opt/base/install/fix.make; \
		cat @DIR@/opt/base/install/Makefile >> @DIR@/opt/base/install/fix.make; \
		rm -f @DIR@/opt/base/install/Makefile; \
		chown root @DIR@/opt/base/install/fix.make; \
		chgrp root @DIR@/opt/base/install/fix.make; \
	else \
		if test "$@" != "fix-make"; then \
			echo "Makefile '@DIR@/opt/base/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


fix-owner: fix.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chown root `cat $(TAR_PATH)/fix.tar-contence`

fix-group: fix.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chgrp root `cat $(TAR_PATH)/fix.tar-contence`



fix-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



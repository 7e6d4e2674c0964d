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

products: c base afix

#############################################################################

c: c-message c-new c-dat-file \
		c-succeeded


c-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'C'  ***"
	echo " "



c-new:	c-tar c-owner \
		c-group \
		c-inst-files c-make



c-tar: c.tar
	echo "** extracting $(TAR_PATH)/c.tar to @DIR@/opt/c"
	cd @DIR@/opt/c; tar -xvpf $(TAR_PATH)/c.tar
	cd @DIR@/opt/c; rm -f $(TAR_PATH)/c.tar-contence


c.tar-contence: c.tar
	echo "** getting contence of $(TAR_PATH)/c.tar"
	tar -tf $(TAR_PATH)/c.tar | cut -f1 -d" " > $(TAR_PATH)/c.tar-contence


c-inst-files: c-inst-dir
	echo "** copying installation stuff to @DIR@/opt/c"
	diff ./morvane.rsc @DIR@/opt/c/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/c && \
	chown root @DIR@/opt/c/morvane.rsc && \
	chgrp root @DIR@/opt/c/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/c/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/c && \
	chown root @DIR@/opt/c/morvane.SunOS4 && \
	chgrp root @DIR@/opt/c/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/c/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/c && \
	chown root @DIR@/opt/c/morvane.SunOS5 && \
	chgrp root @DIR@/opt/c/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/c/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/c && \
	chown root @DIR@/opt/c/Makefile && \
	chgrp root @DIR@/opt/c/Makefile  )
	diff ./c.descr @DIR@/opt/c/install/c.descr > /dev/null 2>&1 || \
	(cp -p ./c.descr @DIR@/opt/c/install && \
	chown root @DIR@/opt/c/install/c.descr && \
	chgrp root @DIR@/opt/c/install/c.descr  )


c-dat-file: c-inst-dir
	diff ./c.dat @DIR@/opt/c/install/c.dat > /dev/null 2>&1 || \
	(cp -p ./c.dat @DIR@/opt/c/install && \
	chown root @DIR@/opt/c/install/c.dat && \
	chgrp root @DIR@/opt/c/install/c.dat  )


c-inst-dir:
	if test -d @DIR@/opt/c/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/c'"; \
		mkdir @DIR@/opt/c/install; \
		chown root @DIR@/opt/c/install; \
		chgrp root @DIR@/opt/c/install; \
	fi

c-make @DIR@/opt/c/install/c.make:
	if test -f @DIR@/opt/c/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/c/install/c.make'"; \
		echo "include c.dat" > @DIR@/opt/c/install/c.make; \
		cat @DIR@/opt/c/install/Makefile >> @DIR@/opt/c/install/c.make; \
		rm -f @DIR@/opt/c/install/Makefile; \
		chown root @DIR@/opt/c/install/c.make; \
		chgrp root @DIR@/opt/c/install/c.make; \
	else \
		if test "$@" != "c-make"; then \
			echo "Makefile '@DIR@/opt/c/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


c-owner: c.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/c'"
	cd @DIR@/opt/c; chown root `cat $(TAR_PATH)/c.tar-contence`

c-group: c.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/c'"
	cd @DIR@/opt/c; chgrp root `cat $(TAR_PATH)/c.tar-contence`



c-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

base: base-message base-new base-dat-file \
		base-for-c  \
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
	echo "** extracting $(TAR_PATH)/base.tar to @DIR@/opt/fix"
	cd @DIR@/opt/fix; tar -xvpf $(TAR_PATH)/base.tar
	cd @DIR@/opt/fix; rm -f $(TAR_PATH)/base.tar-contence


base.tar-contence: base.tar
	echo "** getting contence of $(TAR_PATH)/base.tar"
	tar -tf $(TAR_PATH)/base.tar | cut -f1 -d" " > $(TAR_PATH)/base.tar-contence


base-inst-files: base-inst-dir
	echo "** copying installation stuff to @DIR@/opt/fix"
	diff ./morvane.rsc @DIR@/opt/fix/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/fix && \
	chown root @DIR@/opt/fix/morvane.rsc && \
	chgrp root @DIR@/opt/fix/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/fix/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/fix && \
	chown root @DIR@/opt/fix/morvane.SunOS4 && \
	chgrp root @DIR@/opt/fix/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/fix/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/fix && \
	chown root @DIR@/opt/fix/morvane.SunOS5 && \
	chgrp root @DIR@/opt/fix/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/fix/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/fix && \
	chown root @DIR@/opt/fix/Makefile && \
	chgrp root @DIR@/opt/fix/Makefile  )
	diff ./base.descr @DIR@/opt/fix/install/base.descr > /dev/null 2>&1 || \
	(cp -p ./base.descr @DIR@/opt/fix/install && \
	chown root @DIR@/opt/fix/install/base.descr && \
	chgrp root @DIR@/opt/fix/install/base.descr  )


base-dat-file: base-inst-dir
	diff ./base.dat @DIR@/opt/fix/install/base.dat > /dev/null 2>&1 || \
	(cp -p ./base.dat @DIR@/opt/fix/install && \
	chown root @DIR@/opt/fix/install/base.dat && \
	chgrp root @DIR@/opt/fix/install/base.dat  )


base-inst-dir:
	if test -d @DIR@/opt/fix/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/fix'"; \
		mkdir @DIR@/opt/fix/install; \
		chown root @DIR@/opt/fix/install; \
		chgrp root @DIR@/opt/fix/install; \
	fi

base-make @DIR@/opt/fix/install/base.make:
	if test -f @DIR@/opt/fix/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/fix/install/base.make'"; \
		echo "include base.dat" > @DIR@/opt/fix/install/base.make; \
		cat @DIR@/opt/fix/install/Makefile >> @DIR@/opt/fix/install/base.make; \
		rm -f @DIR@/opt/fix/install/Makefile; \
		chown root @DIR@/opt/fix/install/base.make; \
		chgrp root @DIR@/opt/fix/install/base.make; \
	else \
		if test "$@" != "base-make"; then \
			echo "Makefile '@DIR@/opt/fix/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


base-owner: base.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/fix'"
	cd @DIR@/opt/fix; chown root `cat $(TAR_PATH)/base.tar-contence`

base-group: base.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/fix'"
	cd @DIR@/opt/fix; chgrp root `cat $(TAR_PATH)/base.tar-contence`



base-for-c: @DIR@/opt/fix/install/base.make
	echo "** making 'for-c' for 'Base'"
	cd @DIR@/opt/fix/install; $(MAKE) -f base.make for-c

base-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

afix: afix-message afix-new afix-dat-file \
		afix-succeeded


afix-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Base system'  ***"
	echo " "



afix-new:	afix-tar afix-owner \
		afix-group \
		afix-inst-files afix-make



afix-tar: afix.tar
	echo "** extracting $(TAR_PATH)/afix.tar to @DIR@/opt/fix"
	cd @DIR@/opt/fix; tar -xvpf $(TAR_PATH)/afix.tar
	cd @DIR@/opt/fix; rm -f $(TAR_PATH)/afix.tar-contence


afix.tar-contence: afix.tar
	echo "** getting contence of $(TAR_PATH)/afix.tar"
	tar -tf $(TAR_PATH)/afix.tar | cut -f1 -d" " > $(TAR_PATH)/afix.tar-contence


afix-inst-files: afix-inst-dir
	echo "** copying installation stuff to @DIR@/opt/fix"
	diff ./morvane.rsc @DIR@/opt/fix/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/fix && \
	chown root @DIR@/opt/fix/morvane.rsc && \
	chgrp root @DIR@/opt/fix/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/fix/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/fix && \
	chown root @DIR@/opt/fix/morvane.SunOS4 && \
	chgrp root @DIR@/opt/fix/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/fix/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/fix && \
	chown root @DIR@/opt/fix/morvane.SunOS5 && \
	chgrp root @DIR@/opt/fix/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/fix/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/fix && \
	chown root @DIR@/opt/fix/Makefile && \
	chgrp root @DIR@/opt/fix/Makefile  )
	diff ./afix.descr @DIR@/opt/fix/install/afix.descr > /dev/null 2>&1 || \
	(cp -p ./afix.descr @DIR@/opt/fix/install && \
	chown root @DIR@/opt/fix/install/afix.descr && \
	chgrp root @DIR@/opt/fix/install/afix.descr  )


afix-dat-file: afix-inst-dir
	diff ./afix.dat @DIR@/opt/fix/install/afix.dat > /dev/null 2>&1 || \
	(cp -p ./afix.dat @DIR@/opt/fix/install && \
	chown root @DIR@/opt/fix/install/afix.dat && \
	chgrp root @DIR@/opt/fix/install/afix.dat  )


afix-inst-dir:
	if test -d @DIR@/opt/fix/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/fix'"; \
		mkdir @DIR@/opt/fix/install; \
		chown root @DIR@/opt/fix/install; \
		chgrp root @DIR@/opt/fix/install; \
	fi

afix-make @DIR@/opt/fix/install/afix.make:
	if test -f @DIR@/opt/fix/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/fix/install/afix.make'"; \
		echo "include afix.dat" > @DIR@/opt/fix/install/afix.make; \
		cat @DIR@/opt/fix/install/Makefile >> @DIR@/opt/fix/install/afix.make; \
		rm -f @DIR@/opt/fix/install/Makefile; \
		chown root @DIR@/opt/fix/install/afix.make; \
		chgrp root @DIR@/opt/fix/install/afix.make; \
	else \
		if test "$@" != "afix-make"; then \
			echo "Makefile '@DIR@/opt/fix/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


afix-owner: afix.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/fix'"
	cd @DIR@/opt/fix; chown root `cat $(TAR_PATH)/afix.tar-contence`

afix-group: afix.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/fix'"
	cd @DIR@/opt/fix; chgrp root `cat $(TAR_PATH)/afix.tar-contence`



afix-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



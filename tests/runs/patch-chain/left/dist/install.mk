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

products: zero fix1 fix2

#############################################################################

zero: zero-message zero-new zero-dat-file \
		zero-succeeded


zero-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Base system'  ***"
	echo " "



zero-new:	zero-tar zero-owner \
		zero-group \
		zero-inst-files zero-make



zero-tar: zero.tar
	echo "** extracting $(TAR_PATH)/zero.tar to @DIR@/opt/base"
	cd @DIR@/opt/base; tar -xvpf $(TAR_PATH)/zero.tar
	cd @DIR@/opt/base; rm -f $(TAR_PATH)/zero.tar-contence


zero.tar-contence: zero.tar
	echo "** getting contence of $(TAR_PATH)/zero.tar"
	tar -tf $(TAR_PATH)/zero.tar | cut -f1 -d" " > $(TAR_PATH)/zero.tar-contence


zero-inst-files: zero-inst-dir
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
	diff ./zero.descr @DIR@/opt/base/install/zero.descr > /dev/null 2>&1 || \
	(cp -p ./zero.descr @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/zero.descr && \
	chgrp root @DIR@/opt/base/install/zero.descr  )


zero-dat-file: zero-inst-dir
	diff ./zero.dat @DIR@/opt/base/install/zero.dat > /dev/null 2>&1 || \
	(cp -p ./zero.dat @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/zero.dat && \
	chgrp root @DIR@/opt/base/install/zero.dat  )


zero-inst-dir:
	if test -d @DIR@/opt/base/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/base'"; \
		mkdir @DIR@/opt/base/install; \
		chown root @DIR@/opt/base/install; \
		chgrp root @DIR@/opt/base/install; \
	fi

zero-make @DIR@/opt/base/install/zero.make:
	if test -f @DIR@/opt/base/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/base/install/zero.make'"; \
		echo "include zero.dat" > @DIR@/opt/base/install/zero.make; \
		cat @DIR@/opt/base/install/Makefile >> @DIR@/opt/base/install/zero.make; \
		rm -f @DIR@/opt/base/install/Makefile; \
		chown root @DIR@/opt/base/install/zero.make; \
		chgrp root @DIR@/opt/base/install/zero.make; \
	else \
		if test "$@" != "zero-make"; then \
			echo "Makefile '@DIR@/opt/base/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


zero-owner: zero.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chown root `cat $(TAR_PATH)/zero.tar-contence`

zero-group: zero.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chgrp root `cat $(TAR_PATH)/zero.tar-contence`



zero-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

fix1: fix1-message fix1-new fix1-dat-file \
		fix1-succeeded


fix1-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Base system'  ***"
	echo " "



fix1-new:	fix1-tar fix1-owner \
		fix1-group \
		fix1-inst-files fix1-make



fix1-tar: fix1.tar
	echo "** extracting $(TAR_PATH)/fix1.tar to @DIR@/opt/base"
	cd @DIR@/opt/base; tar -xvpf $(TAR_PATH)/fix1.tar
	cd @DIR@/opt/base; rm -f $(TAR_PATH)/fix1.tar-contence


fix1.tar-contence: fix1.tar
	echo "** getting contence of $(TAR_PATH)/fix1.tar"
	tar -tf $(TAR_PATH)/fix1.tar | cut -f1 -d" " > $(TAR_PATH)/fix1.tar-contence


fix1-inst-files: fix1-inst-dir
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
	diff ./fix1.descr @DIR@/opt/base/install/fix1.descr > /dev/null 2>&1 || \
	(cp -p ./fix1.descr @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/fix1.descr && \
	chgrp root @DIR@/opt/base/install/fix1.descr  )


fix1-dat-file: fix1-inst-dir
	diff ./fix1.dat @DIR@/opt/base/install/fix1.dat > /dev/null 2>&1 || \
	(cp -p ./fix1.dat @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/fix1.dat && \
	chgrp root @DIR@/opt/base/install/fix1.dat  )


fix1-inst-dir:
	if test -d @DIR@/opt/base/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/base'"; \
		mkdir @DIR@/opt/base/install; \
		chown root @DIR@/opt/base/install; \
		chgrp root @DIR@/opt/base/install; \
	fi

fix1-make @DIR@/opt/base/install/fix1.make:
	if test -f @DIR@/opt/base/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/base/install/fix1.make'"; \
		echo "include fix1.dat" > @DIR@/opt/base/install/fix1.make; \
		cat @DIR@/opt/base/install/Makefile >> @DIR@/opt/base/install/fix1.make; \
		rm -f @DIR@/opt/base/install/Makefile; \
		chown root @DIR@/opt/base/install/fix1.make; \
		chgrp root @DIR@/opt/base/install/fix1.make; \
	else \
		if test "$@" != "fix1-make"; then \
			echo "Makefile '@DIR@/opt/base/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


fix1-owner: fix1.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chown root `cat $(TAR_PATH)/fix1.tar-contence`

fix1-group: fix1.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chgrp root `cat $(TAR_PATH)/fix1.tar-contence`



fix1-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

fix2: fix2-message fix2-new fix2-dat-file \
		fix2-succeeded


fix2-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Base system'  ***"
	echo " "



fix2-new:	fix2-tar fix2-owner \
		fix2-group \
		fix2-inst-files fix2-make



fix2-tar: fix2.tar
	echo "** extracting $(TAR_PATH)/fix2.tar to @DIR@/opt/base"
	cd @DIR@/opt/base; tar -xvpf $(TAR_PATH)/fix2.tar
	cd @DIR@/opt/base; rm -f $(TAR_PATH)/fix2.tar-contence


fix2.tar-contence: fix2.tar
	echo "** getting contence of $(TAR_PATH)/fix2.tar"
	tar -tf $(TAR_PATH)/fix2.tar | cut -f1 -d" " > $(TAR_PATH)/fix2.tar-contence


fix2-inst-files: fix2-inst-dir
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
	diff ./fix2.descr @DIR@/opt/base/install/fix2.descr > /dev/null 2>&1 || \
	(cp -p ./fix2.descr @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/fix2.descr && \
	chgrp root @DIR@/opt/base/install/fix2.descr  )


fix2-dat-file: fix2-inst-dir
	diff ./fix2.dat @DIR@/opt/base/install/fix2.dat > /dev/null 2>&1 || \
	(cp -p ./fix2.dat @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/fix2.dat && \
	chgrp root @DIR@/opt/base/install/fix2.dat  )


fix2-inst-dir:
	if test -d @DIR@/opt/base/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/base'"; \
		mkdir @DIR@/opt/base/install; \
		chown root @DIR@/opt/base/install; \
		chgrp root @DIR@/opt/base/install; \
	fi

fix2-make @DIR@/opt/base/install/fix2.make:
	if test -f @DIR@/opt/base/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/base/install/fix2.make'"; \
		echo "include fix2.dat" > @DIR@/opt/base/install/fix2.make; \
		cat @DIR@/opt/base/install/Makefile >> @DIR@/opt/base/install/fix2.make; \
		rm -f @DIR@/opt/base/install/Makefile; \
		chown root @DIR@/opt/base/install/fix2.make; \
		chgrp root @DIR@/opt/base/install/fix2.make; \
	else \
		if test "$@" != "fix2-make"; then \
			echo "Makefile '@DIR@/opt/base/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


fix2-owner: fix2.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chown root `cat $(TAR_PATH)/fix2.tar-contence`

fix2-group: fix2.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chgrp root `cat $(TAR_PATH)/fix2.tar-contence`



fix2-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



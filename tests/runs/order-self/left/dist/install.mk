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

products: a a

#############################################################################

a: a-message a-new a-dat-file \
		a-for-a  \
		a-succeeded


a-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'A'  ***"
	echo " "



a-new:	a-tar a-owner \
		a-group \
		a-inst-files a-make



a-tar: a.tar
	echo "** extracting $(TAR_PATH)/a.tar to @DIR@/opt/a"
	cd @DIR@/opt/a; tar -xvpf $(TAR_PATH)/a.tar
	cd @DIR@/opt/a; rm -f $(TAR_PATH)/a.tar-contence


a.tar-contence: a.tar
	echo "** getting contence of $(TAR_PATH)/a.tar"
	tar -tf $(TAR_PATH)/a.tar | cut -f1 -d" " > $(TAR_PATH)/a.tar-contence


a-inst-files: a-inst-dir
	echo "** copying installation stuff to @DIR@/opt/a"
	diff ./morvane.rsc @DIR@/opt/a/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/a && \
	chown root @DIR@/opt/a/morvane.rsc && \
	chgrp root @DIR@/opt/a/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/a/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/a && \
	chown root @DIR@/opt/a/morvane.SunOS4 && \
	chgrp root @DIR@/opt/a/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/a/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/a && \
	chown root @DIR@/opt/a/morvane.SunOS5 && \
	chgrp root @DIR@/opt/a/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/a/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/a && \
	chown root @DIR@/opt/a/Makefile && \
	chgrp root @DIR@/opt/a/Makefile  )
	diff ./a.descr @DIR@/opt/a/install/a.descr > /dev/null 2>&1 || \
	(cp -p ./a.descr @DIR@/opt/a/install && \
	chown root @DIR@/opt/a/install/a.descr && \
	chgrp root @DIR@/opt/a/install/a.descr  )


a-dat-file: a-inst-dir
	diff ./a.dat @DIR@/opt/a/install/a.dat > /dev/null 2>&1 || \
	(cp -p ./a.dat @DIR@/opt/a/install && \
	chown root @DIR@/opt/a/install/a.dat && \
	chgrp root @DIR@/opt/a/install/a.dat  )


a-inst-dir:
	if test -d @DIR@/opt/a/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/a'"; \
		mkdir @DIR@/opt/a/install; \
		chown root @DIR@/opt/a/install; \
		chgrp root @DIR@/opt/a/install; \
	fi

a-make @DIR@/opt/a/install/a.make:
	if test -f @DIR@/opt/a/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/a/install/a.make'"; \
		echo "include a.dat" > @DIR@/opt/a/install/a.make; \
		cat @DIR@/opt/a/install/Makefile >> @DIR@/opt/a/install/a.make; \
		rm -f @DIR@/opt/a/install/Makefile; \
		chown root @DIR@/opt/a/install/a.make; \
		chgrp root @DIR@/opt/a/install/a.make; \
	else \
		if test "$@" != "a-make"; then \
			echo "Makefile '@DIR@/opt/a/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


a-owner: a.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/a'"
	cd @DIR@/opt/a; chown root `cat $(TAR_PATH)/a.tar-contence`

a-group: a.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/a'"
	cd @DIR@/opt/a; chgrp root `cat $(TAR_PATH)/a.tar-contence`



a-for-a: @DIR@/opt/a/install/a.make
	echo "** making 'for-a' for 'A'"
	cd @DIR@/opt/a/install; $(MAKE) -f a.make for-a

a-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

a: a-message a-new a-dat-file \
		a-for-a  \
		a-succeeded


a-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'A'  ***"
	echo " "



a-new:	a-tar a-owner \
		a-group \
		a-inst-files a-make



a-tar: a.tar
	echo "** extracting $(TAR_PATH)/a.tar to @DIR@/opt/a"
	cd @DIR@/opt/a; tar -xvpf $(TAR_PATH)/a.tar
	cd @DIR@/opt/a; rm -f $(TAR_PATH)/a.tar-contence


a.tar-contence: a.tar
	echo "** getting contence of $(TAR_PATH)/a.tar"
	tar -tf $(TAR_PATH)/a.tar | cut -f1 -d" " > $(TAR_PATH)/a.tar-contence


a-inst-files: a-inst-dir
	echo "** copying installation stuff to @DIR@/opt/a"
	diff ./morvane.rsc @DIR@/opt/a/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/a && \
	chown root @DIR@/opt/a/morvane.rsc && \
	chgrp root @DIR@/opt/a/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/a/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/a && \
	chown root @DIR@/opt/a/morvane.SunOS4 && \
	chgrp root @DIR@/opt/a/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/a/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/a && \
	chown root @DIR@/opt/a/morvane.SunOS5 && \
	chgrp root @DIR@/opt/a/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/a/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/a && \
	chown root @DIR@/opt/a/Makefile && \
	chgrp root @DIR@/opt/a/Makefile  )
	diff ./a.descr @DIR@/opt/a/install/a.descr > /dev/null 2>&1 || \
	(cp -p ./a.descr @DIR@/opt/a/install && \
	chown root @DIR@/opt/a/install/a.descr && \
	chgrp root @DIR@/opt/a/install/a.descr  )


a-dat-file: a-inst-dir
	diff ./a.dat @DIR@/opt/a/install/a.dat > /dev/null 2>&1 || \
	(cp -p ./a.dat @DIR@/opt/a/install && \
	chown root @DIR@/opt/a/install/a.dat && \
	chgrp root @DIR@/opt/a/install/a.dat  )


a-inst-dir:
	if test -d @DIR@/opt/a/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/a'"; \
		mkdir @DIR@/opt/a/install; \
		chown root @DIR@/opt/a/install; \
		chgrp root @DIR@/opt/a/install; \
	fi

a-make @DIR@/opt/a/install/a.make:
	if test -f @DIR@/opt/a/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/a/install/a.make'"; \
		echo "include a.dat" > @DIR@/opt/a/install/a.make; \
		cat @DIR@/opt/a/install/Makefile >> @DIR@/opt/a/install/a.make; \
		rm -f @DIR@/opt/a/install/Makefile; \
		chown root @DIR@/opt/a/install/a.make; \
		chgrp root @DIR@/opt/a/install/a.make; \
	else \
		if test "$@" != "a-make"; then \
			echo "Makefile '@DIR@/opt/a/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


a-owner: a.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/a'"
	cd @DIR@/opt/a; chown root `cat $(TAR_PATH)/a.tar-contence`

a-group: a.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/a'"
	cd @DIR@/opt/a; chgrp root `cat $(TAR_PATH)/a.tar-contence`



a-for-a: @DIR@/opt/a/install/a.make
	echo "** making 'for-a' for 'A'"
	cd @DIR@/opt/a/install; $(MAKE) -f a.make for-a

a-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



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

products: alpha beta

#############################################################################

alpha: alpha-message alpha-new alpha-dat-file \
		alpha-succeeded


alpha-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Alpha'  ***"
	echo " "



alpha-new:	alpha-tar alpha-owner \
		alpha-group \
		alpha-inst-files alpha-make



alpha-tar: alpha.tar
	echo "** extracting $(TAR_PATH)/alpha.tar to @DIR@/opt"
	cd @DIR@/opt; tar -xvpf $(TAR_PATH)/alpha.tar
	cd @DIR@/opt; rm -f $(TAR_PATH)/alpha.tar-contence


alpha.tar-contence: alpha.tar
	echo "** getting contence of $(TAR_PATH)/alpha.tar"
	tar -tf $(TAR_PATH)/alpha.tar | cut -f1 -d" " > $(TAR_PATH)/alpha.tar-contence


alpha-inst-files: alpha-inst-dir
	echo "** copying installation stuff to @DIR@/opt"
	diff ./morvane.rsc @DIR@/opt/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt && \
	chown root @DIR@/opt/morvane.rsc && \
	chgrp root @DIR@/opt/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt && \
	chown root @DIR@/opt/morvane.SunOS4 && \
	chgrp root @DIR@/opt/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt && \
	chown root @DIR@/opt/morvane.SunOS5 && \
	chgrp root @DIR@/opt/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt && \
	chown root @DIR@/opt/Makefile && \
	chgrp root @DIR@/opt/Makefile  )
	diff ./alpha.descr @DIR@/opt/install/alpha.descr > /dev/null 2>&1 || \
	(cp -p ./alpha.descr @DIR@/opt/install && \
	chown root @DIR@/opt/install/alpha.descr && \
	chgrp root @DIR@/opt/install/alpha.descr  )


alpha-dat-file: alpha-inst-dir
	diff ./alpha.dat @DIR@/opt/install/alpha.dat > /dev/null 2>&1 || \
	(cp -p ./alpha.dat @DIR@/opt/install && \
	chown root @DIR@/opt/install/alpha.dat && \
	chgrp root @DIR@/opt/install/alpha.dat  )


alpha-inst-dir:
	if test -d @DIR@/opt/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt'"; \
		mkdir @DIR@/opt/install; \
		chown root @DIR@/opt/install; \
		chgrp root @DIR@/opt/install; \
	fi

alpha-make @DIR@/opt/install/alpha.make:
	if test -f @DIR@/opt/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/install/alpha.make'"; \
		echo "include alpha.dat" > @DIR@/opt/install/alpha.make; \
		cat @DIR@/opt/install/Makefile >> @DIR@/opt/install/alpha.make; \
		rm -f @DIR@/opt/install/Makefile; \
		chown root @DIR@/opt/install/alpha.make; \
		chgrp root @DIR@/opt/install/alpha.make; \
	else \
		if test "$@" != "alpha-make"; then \
			echo "Makefile '@DIR@/opt/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


alpha-owner: alpha.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt'"
	cd @DIR@/opt; chown root `cat $(TAR_PATH)/alpha.tar-contence`

alpha-group: alpha.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt'"
	cd @DIR@/opt; chgrp root `cat $(TAR_PATH)/alpha.tar-contence`



alpha-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

beta: beta-message beta-new \
		beta-succeeded


beta-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'beta'  ***"
	echo " "



beta-new:	beta-tar beta-owner \
		beta-group \
		beta-inst-files beta-make



beta-tar: beta.tar
	echo "** extracting $(TAR_PATH)/beta.tar to @DIR@/opt"
	cd @DIR@/opt; tar -xvpf $(TAR_PATH)/beta.tar
	cd @DIR@/opt; rm -f $(TAR_PATH)/beta.tar-contence


beta.tar-contence: beta.tar
	echo "** getting contence of $(TAR_PATH)/beta.tar"
	tar -tf $(TAR_PATH)/beta.tar | cut -f1 -d" " > $(TAR_PATH)/beta.tar-contence


beta-inst-files:
	echo "** copying installation stuff to @DIR@/opt"
	diff ./morvane.rsc @DIR@/opt/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt && \
	chown root @DIR@/opt/morvane.rsc && \
	chgrp root @DIR@/opt/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt && \
	chown root @DIR@/opt/morvane.SunOS4 && \
	chgrp root @DIR@/opt/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt && \
	chown root @DIR@/opt/morvane.SunOS5 && \
	chgrp root @DIR@/opt/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt && \
	chown root @DIR@/opt/Makefile && \
	chgrp root @DIR@/opt/Makefile  )


beta-make @DIR@/opt/install/beta.make:
	if test -f @DIR@/opt/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/install/beta.make'"; \
		echo "include beta.dat" > @DIR@/opt/install/beta.make; \
		cat @DIR@/opt/install/Makefile >> @DIR@/opt/install/beta.make; \
		rm -f @DIR@/opt/install/Makefile; \
		chown root @DIR@/opt/install/beta.make; \
		chgrp root @DIR@/opt/install/beta.make; \
	else \
		if test "$@" != "beta-make"; then \
			echo "Makefile '@DIR@/opt/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


beta-owner: beta.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt'"
	cd @DIR@/opt; chown root `cat $(TAR_PATH)/beta.tar-contence`

beta-group: beta.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt'"
	cd @DIR@/opt; chgrp root `cat $(TAR_PATH)/beta.tar-contence`



beta-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



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

products: alpha beta gamma

#############################################################################

alpha: alpha-message alpha-new alpha-dat-file \
		alpha-succeeded


alpha-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Alpha the first'  ***"
	echo " "



alpha-new:	alpha-tar alpha-owner \
		alpha-group alpha-permission \
		alpha-inst-files alpha-make



alpha-tar: alpha.tar
	echo "** extracting $(TAR_PATH)/alpha.tar to @DIR@/dist"
	cd @DIR@/dist; tar -xvpf $(TAR_PATH)/alpha.tar
	cd @DIR@/dist; rm -f $(TAR_PATH)/alpha.tar-contence


alpha.tar-contence: alpha.tar
	echo "** getting contence of $(TAR_PATH)/alpha.tar"
	tar -tf $(TAR_PATH)/alpha.tar | cut -f1 -d" " > $(TAR_PATH)/alpha.tar-contence


alpha-inst-files: alpha-inst-dir
	echo "** copying installation stuff to @DIR@/dist"
	diff ./morvane.rsc @DIR@/dist/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/dist && \
	chown root @DIR@/dist/morvane.rsc && \
	chgrp daemon @DIR@/dist/morvane.rsc && \
	chmod o-rwx @DIR@/dist/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/dist/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/dist && \
	chown root @DIR@/dist/morvane.SunOS4 && \
	chgrp daemon @DIR@/dist/morvane.SunOS4 && \
	chmod o-rwx @DIR@/dist/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/dist/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/dist && \
	chown root @DIR@/dist/morvane.SunOS5 && \
	chgrp daemon @DIR@/dist/morvane.SunOS5 && \
	chmod o-rwx @DIR@/dist/morvane.SunOS5  )
	diff ./Makefile @DIR@/dist/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/dist && \
	chown root @DIR@/dist/Makefile && \
	chgrp daemon @DIR@/dist/Makefile && \
	chmod o-rwx @DIR@/dist/Makefile  )
	diff ./alpha.descr @DIR@/dist/install/alpha.descr > /dev/null 2>&1 || \
	(cp -p ./alpha.descr @DIR@/dist/install && \
	chown root @DIR@/dist/install/alpha.descr && \
	chgrp daemon @DIR@/dist/install/alpha.descr && \
	chmod o-rwx @DIR@/dist/install/alpha.descr  )


alpha-dat-file: alpha-inst-dir
	diff ./alpha.dat @DIR@/dist/install/alpha.dat > /dev/null 2>&1 || \
	(cp -p ./alpha.dat @DIR@/dist/install && \
	chown root @DIR@/dist/install/alpha.dat && \
	chgrp daemon @DIR@/dist/install/alpha.dat && \
	chmod o-rwx @DIR@/dist/install/alpha.dat  )


alpha-inst-dir:
	if test -d @DIR@/dist/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/dist'"; \
		mkdir @DIR@/dist/install; \
		chown root @DIR@/dist/install; \
		chgrp daemon @DIR@/dist/install; \
		chmod o-rwx @DIR@/dist/install; \
	fi

alpha-make @DIR@/dist/install/alpha.make:
	if test -f @DIR@/dist/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/dist/install/alpha.make'"; \
		echo "include alpha.dat" > @DIR@/dist/install/alpha.make; \
		cat @DIR@/dist/install/Makefile >> @DIR@/dist/install/alpha.make; \
		rm -f @DIR@/dist/install/Makefile; \
		chown root @DIR@/dist/install/alpha.make; \
		chgrp daemon @DIR@/dist/install/alpha.make; \
		chmod o-rwx @DIR@/dist/install/alpha.make; \
	else \
		if test "$@" != "alpha-make"; then \
			echo "Makefile '@DIR@/dist/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


alpha-owner: alpha.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chown root `cat $(TAR_PATH)/alpha.tar-contence`

alpha-group: alpha.tar-contence
	echo "** changing group to 'daemon' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chgrp daemon `cat $(TAR_PATH)/alpha.tar-contence`

alpha-permission: alpha.tar-contence
	echo "** changing permissions inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chmod o-rwx `cat $(TAR_PATH)/alpha.tar-contence`



alpha-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

beta: beta-message beta-new beta-dat-file \
		beta-succeeded


beta-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Beta'  ***"
	echo " "



beta-new:	beta-tar beta-owner \
		beta-group \
		beta-inst-files beta-make



beta-tar: beta.tar
	echo "** extracting $(TAR_PATH)/beta.tar to @DIR@/dist"
	cd @DIR@/dist; tar -xvpf $(TAR_PATH)/beta.tar
	cd @DIR@/dist; rm -f $(TAR_PATH)/beta.tar-contence


beta.tar-contence: beta.tar
	echo "** getting contence of $(TAR_PATH)/beta.tar"
	tar -tf $(TAR_PATH)/beta.tar | cut -f1 -d" " > $(TAR_PATH)/beta.tar-contence


beta-inst-files: beta-inst-dir
	echo "** copying installation stuff to @DIR@/dist"
	diff ./morvane.rsc @DIR@/dist/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/dist && \
	chown root @DIR@/dist/morvane.rsc && \
	chgrp daemon @DIR@/dist/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/dist/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/dist && \
	chown root @DIR@/dist/morvane.SunOS4 && \
	chgrp daemon @DIR@/dist/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/dist/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/dist && \
	chown root @DIR@/dist/morvane.SunOS5 && \
	chgrp daemon @DIR@/dist/morvane.SunOS5  )
	diff ./Makefile @DIR@/dist/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/dist && \
	chown root @DIR@/dist/Makefile && \
	chgrp daemon @DIR@/dist/Makefile  )
	diff ./beta.descr @DIR@/dist/install/beta.descr > /dev/null 2>&1 || \
	(cp -p ./beta.descr @DIR@/dist/install && \
	chown root @DIR@/dist/install/beta.descr && \
	chgrp daemon @DIR@/dist/install/beta.descr  )


beta-dat-file: beta-inst-dir
	diff ./beta.dat @DIR@/dist/install/beta.dat > /dev/null 2>&1 || \
	(cp -p ./beta.dat @DIR@/dist/install && \
	chown root @DIR@/dist/install/beta.dat && \
	chgrp daemon @DIR@/dist/install/beta.dat  )


beta-inst-dir:
	if test -d @DIR@/dist/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/dist'"; \
		mkdir @DIR@/dist/install; \
		chown root @DIR@/dist/install; \
		chgrp daemon @DIR@/dist/install; \
	fi

beta-make @DIR@/dist/install/beta.make:
	if test -f @DIR@/dist/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/dist/install/beta.make'"; \
		echo "include beta.dat" > @DIR@/dist/install/beta.make; \
		cat @DIR@/dist/install/Makefile >> @DIR@/dist/install/beta.make; \
		rm -f @DIR@/dist/install/Makefile; \
		chown root @DIR@/dist/install/beta.make; \
		chgrp daemon @DIR@/dist/install/beta.make; \
	else \
		if test "$@" != "beta-make"; then \
			echo "Makefile '@DIR@/dist/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


beta-owner: beta.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chown root `cat $(TAR_PATH)/beta.tar-contence`

beta-group: beta.tar-contence
	echo "** changing group to 'daemon' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chgrp daemon `cat $(TAR_PATH)/beta.tar-contence`



beta-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

gamma: gamma-message gamma-new \
		gamma-group-old \
		gamma-succeeded


gamma-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'gamma'  ***"
	echo " "



gamma-new:	gamma-tar gamma-owner \
		gamma-group \
		gamma-inst-files gamma-make



gamma-tar: gamma.tar
	echo "** extracting $(TAR_PATH)/gamma.tar to @DIR@/dist"
	cd @DIR@/dist; tar -xvpf $(TAR_PATH)/gamma.tar
	cd @DIR@/dist; rm -f $(TAR_PATH)/gamma.tar-contence


gamma.tar-contence: gamma.tar
	echo "** getting contence of $(TAR_PATH)/gamma.tar"
	tar -tf $(TAR_PATH)/gamma.tar | cut -f1 -d" " > $(TAR_PATH)/gamma.tar-contence


gamma-inst-files:
	echo "** copying installation stuff to @DIR@/dist"
	diff ./morvane.rsc @DIR@/dist/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/dist && \
	chown root @DIR@/dist/morvane.rsc && \
	chgrp daemon @DIR@/dist/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/dist/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/dist && \
	chown root @DIR@/dist/morvane.SunOS4 && \
	chgrp daemon @DIR@/dist/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/dist/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/dist && \
	chown root @DIR@/dist/morvane.SunOS5 && \
	chgrp daemon @DIR@/dist/morvane.SunOS5  )
	diff ./Makefile @DIR@/dist/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/dist && \
	chown root @DIR@/dist/Makefile && \
	chgrp daemon @DIR@/dist/Makefile  )


gamma-make @DIR@/dist/install/gamma.make:
	if test -f @DIR@/dist/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/dist/install/gamma.make'"; \
		echo "include gamma.dat" > @DIR@/dist/install/gamma.make; \
		cat @DIR@/dist/install/Makefile >> @DIR@/dist/install/gamma.make; \
		rm -f @DIR@/dist/install/Makefile; \
		chown root @DIR@/dist/install/gamma.make; \
		chgrp daemon @DIR@/dist/install/gamma.make; \
	else \
		if test "$@" != "gamma-make"; then \
			echo "Makefile '@DIR@/dist/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


gamma-owner: gamma.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chown root `cat $(TAR_PATH)/gamma.tar-contence`

gamma-group: gamma.tar-contence
	echo "** changing group to 'daemon' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chgrp daemon `cat $(TAR_PATH)/gamma.tar-contence`


gamma-group-old:
	echo "** changing group to 'daemon' for all files with group 'root'"
	cd @DIR@/dist; find . -group root -exec chgrp daemon {} \; 2>/dev/null


gamma-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



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

products: alpha

#############################################################################

alpha: alpha-message alpha-new alpha-dat-file \
		alpha-greeting  \
		alpha-succeeded


alpha-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Alpha'  ***"
	echo " "



alpha-new:	alpha-tar \
		alpha-group alpha-permission \
		alpha-inst-files alpha-make



alpha-tar: alpha.tar
	echo "** extracting $(TAR_PATH)/alpha.tar to @DIR@/opt/alpha"
	cd @DIR@/opt/alpha; tar -xvpf $(TAR_PATH)/alpha.tar
	cd @DIR@/opt/alpha; rm -f $(TAR_PATH)/alpha.tar-contence


alpha.tar-contence: alpha.tar
	echo "** getting contence of $(TAR_PATH)/alpha.tar"
	tar -tf $(TAR_PATH)/alpha.tar | cut -f1 -d" " > $(TAR_PATH)/alpha.tar-contence


alpha-inst-files: alpha-inst-dir
	echo "** copying installation stuff to @DIR@/opt/alpha"
	diff ./morvane.rsc @DIR@/opt/alpha/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/alpha && \
	chgrp @GROUP@ @DIR@/opt/alpha/morvane.rsc && \
	chmod o-rwx @DIR@/opt/alpha/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/alpha/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/alpha && \
	chgrp @GROUP@ @DIR@/opt/alpha/morvane.SunOS4 && \
	chmod o-rwx @DIR@/opt/alpha/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/alpha/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/alpha && \
	chgrp @GROUP@ @DIR@/opt/alpha/morvane.SunOS5 && \
	chmod o-rwx @DIR@/opt/alpha/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/alpha/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/alpha && \
	chgrp @GROUP@ @DIR@/opt/alpha/Makefile && \
	chmod o-rwx @DIR@/opt/alpha/Makefile  )
	diff ./alpha.descr @DIR@/opt/alpha/install/alpha.descr > /dev/null 2>&1 || \
	(cp -p ./alpha.descr @DIR@/opt/alpha/install && \
	chgrp @GROUP@ @DIR@/opt/alpha/install/alpha.descr && \
	chmod o-rwx @DIR@/opt/alpha/install/alpha.descr  )


alpha-dat-file: alpha-inst-dir
	diff ./alpha.dat @DIR@/opt/alpha/install/alpha.dat > /dev/null 2>&1 || \
	(cp -p ./alpha.dat @DIR@/opt/alpha/install && \
	chgrp @GROUP@ @DIR@/opt/alpha/install/alpha.dat && \
	chmod o-rwx @DIR@/opt/alpha/install/alpha.dat  )


alpha-inst-dir:
	if test -d @DIR@/opt/alpha/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/alpha'"; \
		mkdir @DIR@/opt/alpha/install; \
		chgrp @GROUP@ @DIR@/opt/alpha/install; \
		chmod o-rwx @DIR@/opt/alpha/install; \
	fi

alpha-make @DIR@/opt/alpha/install/alpha.make:
	if test -f @DIR@/opt/alpha/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/alpha/install/alpha.make'"; \
		echo "include alpha.dat" > @DIR@/opt/alpha/install/alpha.make; \
		cat @DIR@/opt/alpha/install/Makefile >> @DIR@/opt/alpha/install/alpha.make; \
		rm -f @DIR@/opt/alpha/install/Makefile; \
		chgrp @GROUP@ @DIR@/opt/alpha/install/alpha.make; \
		chmod o-rwx @DIR@/opt/alpha/install/alpha.make; \
	else \
		if test "$@" != "alpha-make"; then \
			echo "Makefile '@DIR@/opt/alpha/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


alpha-group: alpha.tar-contence
	echo "** changing group to '@GROUP@' inside the tree '@DIR@/opt/alpha'"
	cd @DIR@/opt/alpha; chgrp @GROUP@ `cat $(TAR_PATH)/alpha.tar-contence`

alpha-permission: alpha.tar-contence
	echo "** changing permissions inside the tree '@DIR@/opt/alpha'"
	cd @DIR@/opt/alpha; chmod o-rwx `cat $(TAR_PATH)/alpha.tar-contence`



alpha-greeting: @DIR@/opt/alpha/install/alpha.make
	echo "** making 'greeting' for 'Alpha'"
	cd @DIR@/opt/alpha/install; $(MAKE) -f alpha.make greeting

alpha-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



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
		alpha-succeeded


alpha-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Alpha'  ***"
	echo " "



alpha-new:	alpha-tar \
		alpha-group \
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
	chgrp @GROUP@ @DIR@/dist/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/dist/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/dist && \
	chgrp @GROUP@ @DIR@/dist/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/dist/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/dist && \
	chgrp @GROUP@ @DIR@/dist/morvane.SunOS5  )
	diff ./Makefile @DIR@/dist/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/dist && \
	chgrp @GROUP@ @DIR@/dist/Makefile  )
	diff ./alpha.descr @DIR@/dist/install/alpha.descr > /dev/null 2>&1 || \
	(cp -p ./alpha.descr @DIR@/dist/install && \
	chgrp @GROUP@ @DIR@/dist/install/alpha.descr  )


alpha-dat-file: alpha-inst-dir
	diff ./alpha.dat @DIR@/dist/install/alpha.dat > /dev/null 2>&1 || \
	(cp -p ./alpha.dat @DIR@/dist/install && \
	chgrp @GROUP@ @DIR@/dist/install/alpha.dat  )


alpha-inst-dir:
	if test -d @DIR@/dist/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/dist'"; \
		mkdir @DIR@/dist/install; \
		chgrp @GROUP@ @DIR@/dist/install; \
	fi

alpha-make @DIR@/dist/install/alpha.make:
	if test -f @DIR@/dist/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/dist/install/alpha.make'"; \
		echo "include alpha.dat" > @DIR@/dist/install/alpha.make; \
		cat @DIR@/dist/install/Makefile >> @DIR@/dist/install/alpha.make; \
		rm -f @DIR@/dist/install/Makefile; \
		chgrp @GROUP@ @DIR@/dist/install/alpha.make; \
	else \
		if test "$@" != "alpha-make"; then \
			echo "Makefile '@DIR@/dist/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


alpha-group: alpha.tar-contence
	echo "** changing group to '@GROUP@' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chgrp @GROUP@ `cat $(TAR_PATH)/alpha.tar-contence`



alpha-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



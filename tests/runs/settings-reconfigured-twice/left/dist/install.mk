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

alpha: alpha-message alpha-dat-file \
		alpha-manual alpha-samples  \
		alpha-succeeded


alpha-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Alpha'  ***"
	echo " "



alpha-dat-file: alpha-inst-dir
	diff ./alpha.dat @DIR@/dist/install/alpha.dat > /dev/null 2>&1 || \
	(cp -p ./alpha.dat @DIR@/dist/install && \
	chown bin @DIR@/dist/install/alpha.dat && \
	chgrp bin @DIR@/dist/install/alpha.dat && \
	chmod o-rwx @DIR@/dist/install/alpha.dat  )


alpha-inst-dir:
	if test -d @DIR@/dist/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/dist'"; \
		mkdir @DIR@/dist/install; \
		chown bin @DIR@/dist/install; \
		chgrp bin @DIR@/dist/install; \
		chmod o-rwx @DIR@/dist/install; \
	fi

alpha-make @DIR@/dist/install/alpha.make:
	if test -f @DIR@/dist/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/dist/install/alpha.make'"; \
		echo "include alpha.dat" > @DIR@/dist/install/alpha.make; \
		cat @DIR@/dist/install/Makefile >> @DIR@/dist/install/alpha.make; \
		rm -f @DIR@/dist/install/Makefile; \
		chown bin @DIR@/dist/install/alpha.make; \
		chgrp bin @DIR@/dist/install/alpha.make; \
		chmod o-rwx @DIR@/dist/install/alpha.make; \
	else \
		if test "$@" != "alpha-make"; then \
			echo "Makefile '@DIR@/dist/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi




alpha-manual: @DIR@/dist/install/alpha.make
	echo "** making 'manual' for 'Alpha'"
	cd @DIR@/dist/install; $(MAKE) -f alpha.make manual

alpha-samples: @DIR@/dist/install/alpha.make
	echo "** making 'samples' for 'Alpha'"
	cd @DIR@/dist/install; $(MAKE) -f alpha.make samples

alpha-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



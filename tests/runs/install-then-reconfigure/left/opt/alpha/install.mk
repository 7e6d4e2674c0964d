# <141 generated head 1>
# <142 generated head 2>
#
# <143 generated head 3> @(#)morvane	1.20	95/06/08 

#
# This file was generated automatically by 'morvane'.

.SILENT:

CC		= /usr/bin/cc
INST_FILES	= morvane.rsc morvane.SunOS4 morvane.SunOS5 Makefile
TAR_PATH	= @DIR@/opt/alpha


install:        products

products: alpha

#############################################################################

alpha: alpha-message alpha-dat-file \
		alpha-greeting  \
		alpha-succeeded


alpha-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Alpha'  ***"
	echo " "



alpha-dat-file: alpha-inst-dir
	diff ./alpha.dat @DIR@/opt/alpha/install/alpha.dat > /dev/null 2>&1 || \
	(cp -p ./alpha.dat @DIR@/opt/alpha/install && \
	chown root @DIR@/opt/alpha/install/alpha.dat && \
	chgrp root @DIR@/opt/alpha/install/alpha.dat && \
	chmod o-rwx @DIR@/opt/alpha/install/alpha.dat  )


alpha-inst-dir:
	if test -d @DIR@/opt/alpha/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/alpha'"; \
		mkdir @DIR@/opt/alpha/install; \
		chown root @DIR@/opt/alpha/install; \
		chgrp root @DIR@/opt/alpha/install; \
		chmod o-rwx @DIR@/opt/alpha/install; \
	fi

alpha-make @DIR@/opt/alpha/install/alpha.make:
	if test -f @DIR@/opt/alpha/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/alpha/install/alpha.make'"; \
		echo "include alpha.dat" > @DIR@/opt/alpha/install/alpha.make; \
		cat @DIR@/opt/alpha/install/Makefile >> @DIR@/opt/alpha/install/alpha.make; \
		rm -f @DIR@/opt/alpha/install/Makefile; \
		chown root @DIR@/opt/alpha/install/alpha.make; \
		chgrp root @DIR@/opt/alpha/install/alpha.make; \
		chmod o-rwx @DIR@/opt/alpha/install/alpha.make; \
	else \
		if test "$@" != "alpha-make"; then \
			echo "Makefile '@DIR@/opt/alpha/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi




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



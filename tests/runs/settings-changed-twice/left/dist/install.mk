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
		alpha-docs  \
		alpha-succeeded


alpha-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'alpha'  ***"
	echo " "



alpha-new:	alpha-tar alpha-owner \
		alpha-group \
		alpha-inst-files alpha-make



alpha-tar: alpha.tar
	echo "** extracting $(TAR_PATH)/alpha.tar to @DIR@"
	cd @DIR@; tar -xvpf $(TAR_PATH)/alpha.tar
	cd @DIR@; rm -f $(TAR_PATH)/alpha.tar-contence


alpha.tar-contence: alpha.tar
	echo "** getting contence of $(TAR_PATH)/alpha.tar"
	tar -tf $(TAR_PATH)/alpha.tar | cut -f1 -d" " > $(TAR_PATH)/alpha.tar-contence


alpha-inst-files: alpha-inst-dir
	echo "** copying installation stuff to @DIR@"
	diff ./morvane.rsc @DIR@/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@ && \
	chown root @DIR@/morvane.rsc && \
	chgrp daemon @DIR@/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@ && \
	chown root @DIR@/morvane.SunOS4 && \
	chgrp daemon @DIR@/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@ && \
	chown root @DIR@/morvane.SunOS5 && \
	chgrp daemon @DIR@/morvane.SunOS5  )
	diff ./Makefile @DIR@/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@ && \
	chown root @DIR@/Makefile && \
	chgrp daemon @DIR@/Makefile  )
	diff ./alpha.descr @DIR@/install/alpha.descr > /dev/null 2>&1 || \
	(cp -p ./alpha.descr @DIR@/install && \
	chown root @DIR@/install/alpha.descr && \
	chgrp daemon @DIR@/install/alpha.descr  )


alpha-dat-file: alpha-inst-dir
	diff ./alpha.dat @DIR@/install/alpha.dat > /dev/null 2>&1 || \
	(cp -p ./alpha.dat @DIR@/install && \
	chown root @DIR@/install/alpha.dat && \
	chgrp daemon @DIR@/install/alpha.dat  )


alpha-inst-dir:
	if test -d @DIR@/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@'"; \
		mkdir @DIR@/install; \
		chown root @DIR@/install; \
		chgrp daemon @DIR@/install; \
	fi

alpha-make @DIR@/install/alpha.make:
	if test -f @DIR@/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/install/alpha.make'"; \
		echo "include alpha.dat" > @DIR@/install/alpha.make; \
		cat @DIR@/install/Makefile >> @DIR@/install/alpha.make; \
		rm -f @DIR@/install/Makefile; \
		chown root @DIR@/install/alpha.make; \
		chgrp daemon @DIR@/install/alpha.make; \
	else \
		if test "$@" != "alpha-make"; then \
			echo "Makefile '@DIR@/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


alpha-owner: alpha.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@'"
	cd @DIR@; chown root `cat $(TAR_PATH)/alpha.tar-contence`

alpha-group: alpha.tar-contence
	echo "** changing group to 'daemon' inside the tree '@DIR@'"
	cd @DIR@; chgrp daemon `cat $(TAR_PATH)/alpha.tar-contence`



alpha-docs: @DIR@/install/alpha.make
	echo "** making 'docs' for ''"
	cd @DIR@/install; $(MAKE) -f alpha.make docs

alpha-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



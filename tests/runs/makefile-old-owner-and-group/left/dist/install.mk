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
		alpha-permission-old alpha-owner-old alpha-group-old \
		alpha-succeeded


alpha-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Alpha'  ***"
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
	chown daemon @DIR@/dist/morvane.rsc && \
	chgrp bin @DIR@/dist/morvane.rsc && \
	chmod o-rwx @DIR@/dist/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/dist/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/dist && \
	chown daemon @DIR@/dist/morvane.SunOS4 && \
	chgrp bin @DIR@/dist/morvane.SunOS4 && \
	chmod o-rwx @DIR@/dist/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/dist/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/dist && \
	chown daemon @DIR@/dist/morvane.SunOS5 && \
	chgrp bin @DIR@/dist/morvane.SunOS5 && \
	chmod o-rwx @DIR@/dist/morvane.SunOS5  )
	diff ./Makefile @DIR@/dist/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/dist && \
	chown daemon @DIR@/dist/Makefile && \
	chgrp bin @DIR@/dist/Makefile && \
	chmod o-rwx @DIR@/dist/Makefile  )
	diff ./alpha.descr @DIR@/dist/install/alpha.descr > /dev/null 2>&1 || \
	(cp -p ./alpha.descr @DIR@/dist/install && \
	chown daemon @DIR@/dist/install/alpha.descr && \
	chgrp bin @DIR@/dist/install/alpha.descr && \
	chmod o-rwx @DIR@/dist/install/alpha.descr  )


alpha-dat-file: alpha-inst-dir
	diff ./alpha.dat @DIR@/dist/install/alpha.dat > /dev/null 2>&1 || \
	(cp -p ./alpha.dat @DIR@/dist/install && \
	chown daemon @DIR@/dist/install/alpha.dat && \
	chgrp bin @DIR@/dist/install/alpha.dat && \
	chmod o-rwx @DIR@/dist/install/alpha.dat  )


alpha-inst-dir:
	if test -d @DIR@/dist/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/dist'"; \
		mkdir @DIR@/dist/install; \
		chown daemon @DIR@/dist/install; \
		chgrp bin @DIR@/dist/install; \
		chmod o-rwx @DIR@/dist/install; \
	fi

alpha-make @DIR@/dist/install/alpha.make:
	if test -f @DIR@/dist/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/dist/install/alpha.make'"; \
		echo "include alpha.dat" > @DIR@/dist/install/alpha.make; \
		cat @DIR@/dist/install/Makefile >> @DIR@/dist/install/alpha.make; \
		rm -f @DIR@/dist/install/Makefile; \
		chown daemon @DIR@/dist/install/alpha.make; \
		chgrp bin @DIR@/dist/install/alpha.make; \
		chmod o-rwx @DIR@/dist/install/alpha.make; \
	else \
		if test "$@" != "alpha-make"; then \
			echo "Makefile '@DIR@/dist/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


alpha-owner: alpha.tar-contence
	echo "** changing owner to 'daemon' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chown daemon `cat $(TAR_PATH)/alpha.tar-contence`

alpha-group: alpha.tar-contence
	echo "** changing group to 'bin' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chgrp bin `cat $(TAR_PATH)/alpha.tar-contence`

alpha-permission: alpha.tar-contence
	echo "** changing permissions inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chmod o-rwx `cat $(TAR_PATH)/alpha.tar-contence`


alpha-permission-old:
	echo "** removing other access for files with owner 'root'"
	cd @DIR@/dist; find . -user root -exec chmod o= {} \; 2>/dev/null
	echo "** removing other access for files with group 'root'"
	cd @DIR@/dist; find . -group root -exec chmod o= {} \; 2>/dev/null

alpha-owner-old:
	echo "** changing owner to 'daemon' for all files with owner 'root'"
	cd @DIR@/dist; find . -user root -exec chown daemon {} \; 2>/dev/null

alpha-group-old:
	echo "** changing group to 'bin' for all files with group 'root'"
	cd @DIR@/dist; find . -group root -exec chgrp bin {} \; 2>/dev/null


alpha-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



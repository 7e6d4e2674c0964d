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

products: fix

#############################################################################

fix: fix-message fix-new fix-dat-file \
		fix-succeeded


fix-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Base system'  ***"
	echo " "



fix-new:	fix-tar fix-owner \
		fix-group \
		fix-inst-files fix-make



fix-tar: fix.tar
	echo "** extracting $(TAR_PATH)/fix.tar to @DIR@/dist"
	cd @DIR@/dist; tar -xvpf $(TAR_PATH)/fix.tar
	cd @DIR@/dist; rm -f $(TAR_PATH)/fix.tar-contence


fix.tar-contence: fix.tar
	echo "** getting contence of $(TAR_PATH)/fix.tar"
	tar -tf $(TAR_PATH)/fix.tar | cut -f1 -d" " > $(TAR_PATH)/fix.tar-contence


fix-inst-files: fix-inst-dir
	echo "** copying installation stuff to @DIR@/dist"
	diff ./morvane.rsc @DIR@/dist/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/dist && \
	chown root @DIR@/dist/morvane.rsc && \
	chgrp root @DIR@/dist/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/dist/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/dist && \
	chown root @DIR@/dist/morvane.SunOS4 && \
	chgrp root @DIR@/dist/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/dist/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/dist && \
	chown root @DIR@/dist/morvane.SunOS5 && \
	chgrp root @DIR@/dist/morvane.SunOS5  )
	diff ./Makefile @DIR@/dist/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/dist && \
	chown root @DIR@/dist/Makefile && \
	chgrp root @DIR@/dist/Makefile  )
	diff ./fix.descr @DIR@/dist/install/fix.descr > /dev/null 2>&1 || \
	(cp -p ./fix.descr @DIR@/dist/install && \
	chown root @DIR@/dist/install/fix.descr && \
	chgrp root @DIR@/dist/install/fix.descr  )


fix-dat-file: fix-inst-dir
	diff ./fix.dat @DIR@/dist/install/fix.dat > /dev/null 2>&1 || \
	(cp -p ./fix.dat @DIR@/dist/install && \
	chown root @DIR@/dist/install/fix.dat && \
	chgrp root @DIR@/dist/install/fix.dat  )


fix-inst-dir:
	if test -d @DIR@/dist/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/dist'"; \
		mkdir @DIR@/dist/install; \
		chown root @DIR@/dist/install; \
		chgrp root @DIR@/dist/install; \
	fi

fix-make @DIR@/dist/install/fix.make:
	if test -f @DIR@/dist/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/dist/install/fix.make'"; \
		echo "include fix.dat" > @DIR@/dist/install/fix.make; \
		cat @DIR@/dist/install/Makefile >> @DIR@/dist/install/fix.make; \
		rm -f @DIR@/dist/install/Makefile; \
		chown root @DIR@/dist/install/fix.make; \
		chgrp root @DIR@/dist/install/fix.make; \
	else \
		if test "$@" != "fix-make"; then \
			echo "Makefile '@DIR@/dist/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


fix-owner: fix.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chown root `cat $(TAR_PATH)/fix.tar-contence`

fix-group: fix.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chgrp root `cat $(TAR_PATH)/fix.tar-contence`



fix-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c



# No resource #141!

# No resource #142!

#
# No resource #143!
 @(#)morvane	1.20	95/06/08 

#
# This file was generated automatically by 'morvane'.

.SILENT:

CC		= /usr/bin/cc
INST_FILES	= morvane.rsc morvane.SunOS4 morvane.SunOS5 Makefile
TAR_PATH	= @DIR@/dist


install:        products

products: alpha

#############################################################################

alpha: alpha-message alpha-new \
		alpha-succeeded


alpha-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'alpha'  ***"
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


alpha-inst-files:
	echo "** copying installation stuff to @DIR@/dist"
	diff ./morvane.SunOS4 @DIR@/dist/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/dist && \
	chown root @DIR@/dist/morvane.SunOS4 && \
	chgrp root @DIR@/dist/morvane.SunOS4 && \
	chmod o-rwx @DIR@/dist/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/dist/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/dist && \
	chown root @DIR@/dist/morvane.SunOS5 && \
	chgrp root @DIR@/dist/morvane.SunOS5 && \
	chmod o-rwx @DIR@/dist/morvane.SunOS5  )
	diff ./Makefile @DIR@/dist/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/dist && \
	chown root @DIR@/dist/Makefile && \
	chgrp root @DIR@/dist/Makefile && \
	chmod o-rwx @DIR@/dist/Makefile  )


alpha-make @DIR@/dist/install/alpha.make:
	if test -f @DIR@/dist/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/dist/install/alpha.make'"; \
		echo "include alpha.dat" > @DIR@/dist/install/alpha.make; \
		cat @DIR@/dist/install/Makefile >> @DIR@/dist/install/alpha.make; \
		rm -f @DIR@/dist/install/Makefile; \
		chown root @DIR@/dist/install/alpha.make; \
		chgrp root @DIR@/dist/install/alpha.make; \
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
	echo "** changing group to 'root' inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chgrp root `cat $(TAR_PATH)/alpha.tar-contence`

alpha-permission: alpha.tar-contence
	echo "** changing permissions inside the tree '@DIR@/dist'"
	cd @DIR@/dist; chmod o-rwx `cat $(TAR_PATH)/alpha.tar-contence`



alpha-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c


